#pragma once

#include <span>
#include <string_view>

namespace Tolen::Language {

/// What people have written about a name of the language.
struct BuiltinText {
    std::string_view name;
    /// The names of a function's parameters. Where they differ by their number, "|" is between.
    std::string_view parameters;
    std::string_view documentation;
};

/// One for each function and variable of the embedded OpenKL, for those that the library adds, and
/// for each keyword and type; in no particular order.
std::span<const BuiltinText> GetBuiltinTexts();

/// @return null when nothing is written about the name
const BuiltinText* FindBuiltinText(std::string_view name);

} // namespace Tolen::Language
