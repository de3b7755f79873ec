#pragma once

#include <string>
#include <string_view>

namespace Tolen::Effects {

/// One line of a source as the preprocessor sees it.
struct DirectiveLine {
    enum Directive {
        kDirective_None, ///< text
        kDirective_Include,
        kDirective_Import,
        kDirective_Define,
        kDirective_Undef,
        kDirective_Ifdef,
        kDirective_Ifndef,
        kDirective_Else,
        kDirective_Endif,
    };

    Directive directive = kDirective_None;
    std::string argument; ///< the second word
    std::string rest;     ///< what follows it, cleaned of white space at both ends

    /// Reads a line without its line feed. A directive is the first word of the line, spelled
    /// exactly; of other lines nothing but that is told.
    static DirectiveLine Parse(std::string_view line);

    /// Takes the file name between the first and the last double quote of the argument; with one
    /// quote it is all that follows. @return false when there is none
    bool GetFileName(std::string& name) const;
};

} // namespace Tolen::Effects
