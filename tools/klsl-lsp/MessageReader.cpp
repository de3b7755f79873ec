#include "MessageReader.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace Tolen::LanguageServer {

namespace {

constexpr std::string_view kHeaderEnd = "\r\n\r\n";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kLengthName = "Content-Length";

bool IsEqualIgnoringCase(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

bool IsLengthName(std::string_view name) {
    return std::equal(name.begin(), name.end(), kLengthName.begin(), kLengthName.end(),
                      IsEqualIgnoringCase);
}

std::string_view Trim(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::optional<std::size_t> ParseLength(std::string_view text) {
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return length;
}

/// The length in a header, whose lines are @p lines; none when there is none or a line is no field.
std::optional<std::size_t> FindLength(std::string_view lines) {
    std::optional<std::size_t> length;
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find(kLineEnd), lines.size());
        const std::string_view line = lines.substr(0, end);
        lines.remove_prefix(std::min(end + kLineEnd.size(), lines.size()));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            return std::nullopt;
        }
        if (IsLengthName(line.substr(0, colon))) {
            const bool isFirst = !length.has_value();
            length = ParseLength(Trim(line.substr(colon + 1)));
            if (!isFirst || !length.has_value()) {
                return std::nullopt;
            }
        }
    }
    return length;
}

} // namespace

void MessageReader::Append(std::string_view bytes) {
    _bytes.append(bytes);
}

std::optional<MessageReader::Message> MessageReader::Take() {
    while (true) {
        const std::string_view rest = _GetRest();
        switch (_state) {
        case kState_Lost:
            if (!_FindHeader()) {
                return std::nullopt;
            }
            _state = kState_Header;
            break;
        case kState_Skipping: {
            const std::size_t skipped = std::min(_length, rest.size());
            _Consume(skipped);
            _length -= skipped;
            if (_length > 0) {
                return std::nullopt;
            }
            _state = kState_Header;
            break;
        }
        case kState_Header:
            if (std::optional<Message> failure = _TakeHeader()) {
                return failure;
            }
            if (_state == kState_Header) {
                return std::nullopt;
            }
            break;
        case kState_Body: {
            if (rest.size() < _length) {
                return std::nullopt;
            }
            Message message{std::string(rest.substr(0, _length)), {}};
            _Consume(_length);
            _state = kState_Header;
            return message;
        }
        }
    }
}

/// Goes on to another state when the header is there as a whole.
std::optional<MessageReader::Message> MessageReader::_TakeHeader() {
    const std::string_view rest = _GetRest().substr(0, kLimitHeader);
    const std::size_t end = rest.find(kHeaderEnd);
    if (end == std::string_view::npos) {
        if (rest.size() < kLimitHeader) {
            return std::nullopt;
        }
        _Consume(1);
        _state = kState_Lost;
        return Message{{}, "a header ends within " + std::to_string(kLimitHeader) + " bytes"};
    }
    const std::optional<std::size_t> length = FindLength(rest.substr(0, end));
    _Consume(end + kHeaderEnd.size());
    if (!length.has_value()) {
        _state = kState_Lost;
        return Message{{}, "a header has fields and among them one Content-Length"};
    }
    _length = *length;
    if (_length > kLimitBody) {
        _state = kState_Skipping;
        return Message{{}, "a message has up to " + std::to_string(kLimitBody) + " bytes"};
    }
    _state = kState_Body;
    return std::nullopt;
}

/// Drops what stands before the next header.
bool MessageReader::_FindHeader() {
    const std::string_view rest = _GetRest();
    const auto found = std::search(rest.begin(), rest.end(), kLengthName.begin(), kLengthName.end(),
                                   IsEqualIgnoringCase);
    if (found != rest.end()) {
        _Consume(static_cast<std::size_t>(found - rest.begin()));
        return true;
    }
    _Consume(rest.size() - std::min(rest.size(), kLengthName.size() - 1));
    return false;
}

void MessageReader::_Consume(std::size_t count) {
    _begin += count;
    // Moving the rest only now and then keeps many small messages from being moved again and again.
    if (_begin > _bytes.size() / 2) {
        _bytes.erase(0, _begin);
        _begin = 0;
    }
}

} // namespace Tolen::LanguageServer
