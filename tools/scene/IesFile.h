#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace Tolen::Scene {

/// A mistake in an IES file, with the line that it was found at.
class IesError : public std::runtime_error {
public:
    IesError(const std::string& file, int line, const std::string& message)
        : std::runtime_error(file + ":" + std::to_string(line) + ": error: " + message) {}
};

/// The luminous intensities of a luminaire by direction, as photometers of type C measure them.
///
/// A direction has two angles in degrees: theta, from 0 straight down to 180 straight up, and phi
/// around the vertical axis.
class Photometry {
public:
    /// How phi goes on beyond the measured planes.
    enum Symmetry {
        kSymmetry_Axial,     ///< one plane stands for all
        kSymmetry_Quadrants, ///< 0 to 90, the same in every quadrant
        kSymmetry_Plane0,    ///< 0 to 180, mirrored at the plane from 0 to 180
        kSymmetry_Plane90,   ///< 90 to 270, mirrored at the plane from 90 to 270
        kSymmetry_None       ///< all around
    };

    /// @param thetas from 0 to 180, ascending
    /// @param phis as the symmetry takes them, ascending
    /// @param candelas for each plane of @p phis those of all @p thetas
    Photometry(Symmetry symmetry, std::vector<double> thetas, std::vector<double> phis,
               std::vector<double> candelas);

    Symmetry GetSymmetry() const { return _symmetry; }
    const std::vector<double>& GetThetas() const { return _thetas; }
    const std::vector<double>& GetPhis() const { return _phis; }

    /// The intensity in candela, linear between measured directions and 0 beyond the measured thetas.
    /// @param phi any number of degrees
    double GetCandela(double theta, double phi) const;

    double GetMostCandela() const;

private:
    double _Fold(double phi) const;
    double _GetInPlane(std::size_t plane, double theta) const;

    Symmetry _symmetry;
    std::vector<double> _thetas;
    std::vector<double> _phis;
    std::vector<double> _candelas;
};

/// Whether the ending of a name is that of IES files.
bool IsIesFile(const std::string& file);

/// Reads a file in the format LM-63 of the IES, of 1986 to 2019, with photometry of type C. Lamps
/// that change with their tilt are taken upright. All factors of the file are applied.
/// @throws IesError; std::runtime_error when the file can't be read
Photometry ReadIes(const std::string& file);

/// The same for a text.
/// @param name for messages
Photometry ParseIes(const std::string& name, const std::string& text);

} // namespace Tolen::Scene
