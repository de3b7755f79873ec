#pragma once

#include "compiler/Token.h"

#include <string_view>
#include <vector>

namespace Tolen::OpenKL {

class Diagnostics;

/// Cuts a text into tokens, the last of which is kToken_End. Longest match; comments of both kinds
/// and white space are left out; characters that start no token are reported and passed over.
/// @param text must outlive the tokens
std::vector<Token> Tokenize(std::string_view text, Diagnostics& diagnostics);

} // namespace Tolen::OpenKL
