#pragma once

#include <optional>
#include <string>

namespace Tolen::LanguageServer {

/// The absolute path that a "file" URI names, without "." and "..". @return none for other URIs
std::optional<std::string> GetPathOfUri(const std::string& uri);

/// @param path absolute
std::string MakeUri(const std::string& path);

} // namespace Tolen::LanguageServer
