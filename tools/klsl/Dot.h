#pragma once

#include <string>

namespace Tolen::Klsl {

/// Whether WriteDrawing knows the ending of @p file.
bool IsDrawingFile(const std::string& file);

/// Writes a graph in the DOT language as it stands, by the ending ".dot", or as the program dot
/// draws it, by ".svg", ".png" or ".pdf".
/// @throws std::runtime_error when the file can't be written or dot isn't there
void WriteDrawing(const std::string& text, const std::string& file);

} // namespace Tolen::Klsl
