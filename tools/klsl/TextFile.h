#pragma once

#include <string>

namespace Tolen::Klsl {

/// Stands for the standard input and the standard output.
constexpr const char* kStandardStream = "-";

/// Whole files. What fails is thrown as std::system_error with the reason.
/// @{
std::string ReadTextFile(const std::string& path);
/// A file has its old text until the new one is whole, and keeps its permissions; where the path is
/// a link, the file that it leads to is written.
void WriteTextFile(const std::string& path, const std::string& text);
/// @}

} // namespace Tolen::Klsl
