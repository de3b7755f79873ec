#include "TolenCore/Path.h"

#include <algorithm>
#include <string_view>

namespace Tolen {

Path::Path(const std::string& text) {
    const std::string root = !text.empty() && text.front() == '/' ? "/" : "";
    _text.reserve(text.size());
    _text = root;
    // Where the part that ".." takes back starts; behind what can't be taken back.
    std::size_t fixed = root.size();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('/', begin), text.size());
        const std::string_view part = std::string_view(text).substr(begin, end - begin);
        begin = end + 1;
        if (part.empty() || part == ".") {
            continue;
        }
        if (part == "..") {
            if (_text.size() > fixed) {
                const std::size_t slash = _text.rfind('/');
                _text.resize(slash == std::string::npos || slash < fixed ? fixed : slash);
                continue;
            }
            if (!root.empty()) {
                continue;
            }
        }
        if (!_text.empty() && _text.back() != '/') {
            _text += '/';
        }
        _text += part;
        if (part == "..") {
            fixed = _text.size();
        }
    }
}

Path Path::GetFolder() const {
    const std::size_t slash = _text.rfind('/');
    Path folder;
    if (slash != std::string::npos) {
        folder._text = _text.substr(0, std::max<std::size_t>(slash, 1));
    }
    return folder;
}

std::string Path::GetFileName() const {
    const std::size_t slash = _text.rfind('/');
    return slash == std::string::npos ? _text : _text.substr(slash + 1);
}

Path Path::operator/(const Path& other) const {
    if (other.IsAbsolute() || IsEmpty()) {
        return other;
    }
    return Path(_text + "/" + other._text);
}

} // namespace Tolen
