#include "scene/IesFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string_view>
#include <utility>

namespace Tolen::Scene {

namespace {

constexpr std::size_t kMostBytes = 64u << 20;
constexpr int kMostAngles = 100000;
constexpr int kMostCandelas = 1 << 24;

std::string_view _Trim(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\f\v\x1a";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Reads one file from its head to its end.
class IesReader {
public:
    IesReader(const std::string& name, std::string_view text) : _name(name), _rest(text) {}

    Photometry Read() {
        const double tilt = _ReadHead();
        _ReadInt("the number of lamps", 1, kMostAngles);
        _ReadNumber("the lumens of a lamp");
        const double multiplier = _ReadFactor("the multiplier of candelas");
        const int thetaCount = _ReadInt("the number of vertical angles", 1, kMostAngles);
        const int phiCount = _ReadInt("the number of horizontal angles", 1, kMostAngles);
        if (phiCount > kMostCandelas / thetaCount) {
            _Fail("more than the limit of " + std::to_string(kMostCandelas) + " candelas");
        }
        const int type = _ReadInt("the type of photometry", 1, 3);
        if (type != 1) {
            _Fail(std::string("photometry of type ") + (type == 2 ? "B" : "A") +
                  " is not supported, only that of type C is");
        }
        _ReadInt("the unit of lengths", 1, 2);
        for (const char* const what : {"the width", "the length", "the height"}) {
            _ReadNumber(what);
        }
        const double ballast = _ReadFactor("the ballast factor");
        // What later editions keep in the place of the second factor says nothing of intensities.
        const double lamp = _hasLampFactor ? _ReadFactor("the ballast-lamp factor")
                                           : (_ReadNumber("the number for future use"), 1.0);
        _ReadNumber("the input watts");
        std::vector<double> thetas = _ReadAngles("vertical", thetaCount, 0.0, 180.0);
        std::vector<double> phis = _ReadAngles("horizontal", phiCount, 0.0, 360.0);
        const Photometry::Symmetry symmetry = _FindSymmetry(phis);
        const double factor = tilt * multiplier * ballast * lamp;
        std::vector<double> candelas;
        for (int i = 0; i < thetaCount * phiCount; ++i) {
            const double candela = factor * _ReadNumber("a candela");
            if (!(candela >= 0.0) || !std::isfinite(candela)) {
                _Fail("a candela below 0 or beyond all bounds");
            }
            candelas.push_back(candela);
        }
        if (_SkipBlanks()) {
            _Fail("something follows behind the last candela");
        }
        return Photometry(symmetry, std::move(thetas), std::move(phis), std::move(candelas));
    }

private:
    [[noreturn]] void _Fail(const std::string& message) const {
        throw IesError(_name, _line, message);
    }

    /// The edition, the labels and the tilt. @return the factor of an upright lamp
    double _ReadHead() {
        std::string_view line = _ReadLine();
        if (line.starts_with("IESNA91")) {
            _hasLampFactor = true;
            line = _ReadLine();
        } else if (line.starts_with("IESNA") || line.starts_with("IES:")) {
            line = _ReadLine();
        } else {
            // Of 1986, without a mark: the first line is a label.
            _hasLampFactor = true;
        }
        while (!line.starts_with("TILT")) {
            if (_rest.empty()) {
                _Fail("no line with TILT=, so this is no IES file");
            }
            line = _ReadLine();
        }
        const std::size_t equals = line.find('=');
        const std::string_view tilt =
            equals == std::string_view::npos ? std::string_view() : _Trim(line.substr(equals + 1));
        if (tilt != "NONE" && tilt != "INCLUDE") {
            _Fail("expected TILT=NONE or TILT=INCLUDE, found '" +
                  std::string(line.substr(0, kMostShown)) + "'");
        }
        ++_line; // all that follows are numbers, in any lines
        return tilt == "NONE" ? 1.0 : _ReadTilt();
    }

    double _ReadTilt() {
        _ReadInt("the place of the lamp", 1, 3);
        const int count = _ReadInt("the number of tilts", 1, kMostAngles);
        const std::vector<double> tilts = _ReadAngles("tilt", count, 0.0, 180.0);
        double upright = 1.0;
        for (int i = 0; i < count; ++i) {
            const double factor = _ReadFactor("a factor of a tilt");
            upright = i == 0 ? factor : upright; // the least tilt, which is 0 in all editions
        }
        return upright;
    }

    std::vector<double> _ReadAngles(const char* kind, int count, double least, double most) {
        std::vector<double> angles;
        for (int i = 0; i < count; ++i) {
            const double angle = _ReadNumber("an angle");
            if (!(angle >= least && angle <= most)) {
                _Fail(std::string("a ") + kind + " angle outside " +
                      std::to_string(static_cast<int>(least)) + " to " +
                      std::to_string(static_cast<int>(most)));
            }
            if (!angles.empty() && !(angle > angles.back())) {
                _Fail(std::string(kind) + " angles have to grow");
            }
            angles.push_back(angle);
        }
        return angles;
    }

    Photometry::Symmetry _FindSymmetry(const std::vector<double>& phis) const {
        const double first = phis.front();
        const double last = phis.back();
        if (phis.size() == 1) {
            return Photometry::kSymmetry_Axial;
        }
        if (first == 90.0 && last == 270.0) {
            return Photometry::kSymmetry_Plane90;
        }
        if (first == 0.0 && last == 90.0) {
            return Photometry::kSymmetry_Quadrants;
        }
        if (first == 0.0 && last == 180.0) {
            return Photometry::kSymmetry_Plane0;
        }
        if (first == 0.0 && last > 180.0) {
            return Photometry::kSymmetry_None;
        }
        _Fail("the horizontal angles end at none of 90, 180 and 360 degrees");
    }

    std::string_view _ReadLine() {
        const std::size_t end = _rest.find('\n');
        const std::string_view line = _rest.substr(0, end);
        _rest.remove_prefix(end == std::string_view::npos ? _rest.size() : end + 1);
        ++_line;
        return _Trim(line);
    }

    /// Goes to the next number. @return whether there is more
    bool _SkipBlanks() {
        while (!_rest.empty()) {
            const char c = _rest.front();
            if (c != ',' && c != '\n' && !_Trim(_rest.substr(0, 1)).empty()) {
                return true;
            }
            _line += c == '\n' ? 1 : 0;
            _rest.remove_prefix(1);
        }
        return false;
    }

    double _ReadNumber(const char* what) {
        if (!_SkipBlanks()) {
            _Fail(std::string("the file ends where ") + what + " is expected");
        }
        const std::size_t end = _rest.find_first_of(" \t\r\n\f\v,\x1a");
        const std::string_view word = _rest.substr(0, end);
        const std::string_view digits = word.starts_with('+') ? word.substr(1) : word;
        double number = 0.0;
        const auto [rest, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (error != std::errc() || rest != digits.data() + digits.size() ||
            !std::isfinite(number)) {
            _Fail(std::string("expected ") + what + ", found '" +
                  std::string(word.substr(0, kMostShown)) + "'");
        }
        _rest.remove_prefix(word.size());
        return number;
    }

    int _ReadInt(const char* what, int least, int most) {
        const double number = _ReadNumber(what);
        if (!(number >= least && number <= most) || number != std::floor(number)) {
            _Fail(std::string(what) + " has to be a whole number from " + std::to_string(least) +
                  " to " + std::to_string(most));
        }
        return static_cast<int>(number);
    }

    double _ReadFactor(const char* what) {
        const double factor = _ReadNumber(what);
        if (!(factor >= 0.0)) {
            _Fail(std::string(what) + " is below 0");
        }
        return factor;
    }

    static constexpr std::size_t kMostShown = 40; ///< of a word that is no number

    const std::string& _name;
    std::string_view _rest;
    int _line = 0;
    bool _hasLampFactor = false;
};

} // namespace

Photometry::Photometry(Symmetry symmetry, std::vector<double> thetas, std::vector<double> phis,
                       std::vector<double> candelas)
    : _symmetry(symmetry), _thetas(std::move(thetas)), _phis(std::move(phis)),
      _candelas(std::move(candelas)) {}

double Photometry::_Fold(double phi) const {
    const double turn = phi - 360.0 * std::floor(phi / 360.0);
    const double half = turn > 180.0 ? 360.0 - turn : turn;
    switch (_symmetry) {
    case kSymmetry_Axial:
        return _phis.front();
    case kSymmetry_Quadrants:
        return half > 90.0 ? 180.0 - half : half;
    case kSymmetry_Plane0:
        return half;
    case kSymmetry_Plane90:
        return turn < 90.0 ? 180.0 - turn : turn > 270.0 ? 540.0 - turn : turn;
    case kSymmetry_None:
        break;
    }
    return turn;
}

double Photometry::_GetInPlane(std::size_t plane, double theta) const {
    if (theta < _thetas.front() || theta > _thetas.back()) {
        return 0.0;
    }
    const double* const candelas = &_candelas[plane * _thetas.size()];
    const auto above = static_cast<std::size_t>(
        std::upper_bound(_thetas.begin(), _thetas.end(), theta) - _thetas.begin());
    if (above == _thetas.size()) {
        return candelas[above - 1];
    }
    const double t = (theta - _thetas[above - 1]) / (_thetas[above] - _thetas[above - 1]);
    return candelas[above - 1] + t * (candelas[above] - candelas[above - 1]);
}

double Photometry::GetCandela(double theta, double phi) const {
    const double folded = _Fold(phi);
    const auto above = static_cast<std::size_t>(
        std::upper_bound(_phis.begin(), _phis.end(), folded) - _phis.begin());
    const std::size_t low = above == 0 ? 0 : above - 1;
    if (above == _phis.size() && _symmetry != kSymmetry_None) {
        return _GetInPlane(low, theta);
    }
    // Behind the last plane of a full turn comes the first one again.
    const std::size_t high = above == _phis.size() ? 0 : above;
    const double width = (high == 0 ? 360.0 + _phis[0] : _phis[high]) - _phis[low];
    const double from = _GetInPlane(low, theta);
    const double t = width > 0.0 ? (folded - _phis[low]) / width : 0.0;
    return from + t * (_GetInPlane(high, theta) - from);
}

double Photometry::GetMostCandela() const {
    return *std::max_element(_candelas.begin(), _candelas.end());
}

bool IsIesFile(const std::string& file) {
    return file.ends_with(".ies") || file.ends_with(".IES");
}

Photometry ParseIes(const std::string& name, const std::string& text) {
    return IesReader(name, text).Read();
}

Photometry ReadIes(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    if (!stream || bytes.fail()) {
        throw std::runtime_error(file + ": can't be read");
    }
    if (bytes.view().size() > kMostBytes) {
        throw std::runtime_error(file + ": larger than the limit of 64 MiB");
    }
    return ParseIes(file, bytes.str());
}

} // namespace Tolen::Scene
