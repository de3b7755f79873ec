#include "Uri.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <string_view>

namespace Tolen::LanguageServer {

namespace {

constexpr std::string_view kScheme = "file://";

bool IsUnreserved(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

/// Replaces each %XX. @return none when a sign of percent begins none, or a byte is zero
std::optional<std::string> Decode(std::string_view text) {
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            decoded += text[at];
            continue;
        }
        const std::string_view digits = text.substr(at + 1, 2);
        unsigned byte = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (error != std::errc() || digits.size() != 2 || end != digits.data() + 2 || byte == 0) {
            return std::nullopt;
        }
        decoded += static_cast<char>(byte);
        at += 2;
    }
    return decoded;
}

} // namespace

std::optional<std::string> GetPathOfUri(const std::string& uri) {
    const bool isFile = uri.size() > kScheme.size() &&
                        std::equal(kScheme.begin(), kScheme.end(), uri.begin(), [](char a, char b) {
                            return a == std::tolower(static_cast<unsigned char>(b));
                        });
    if (!isFile) {
        return std::nullopt;
    }
    std::string_view rest = std::string_view(uri).substr(kScheme.size());
    rest = rest.substr(0, rest.find_first_of("?#"));
    const std::size_t slash = rest.find('/');
    const std::string_view host = rest.substr(0, slash);
    if (slash == std::string_view::npos || !(host.empty() || host == "localhost")) {
        return std::nullopt;
    }
    const std::optional<std::string> path = Decode(rest.substr(slash));
    if (!path.has_value()) {
        return std::nullopt;
    }
    std::string normal = std::filesystem::path(*path).lexically_normal().string();
    if (normal.size() > 1 && normal.ends_with('/')) {
        normal.pop_back();
    }
    return normal;
}

std::string MakeUri(const std::string& path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri(kScheme);
    for (const char c : path) {
        if (IsUnreserved(c)) {
            uri += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            uri += '%';
            uri += digits[byte >> 4];
            uri += digits[byte & 15];
        }
    }
    return uri;
}

} // namespace Tolen::LanguageServer
