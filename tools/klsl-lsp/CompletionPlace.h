#pragma once

#include "Source.h"

#include <cstddef>
#include <string>

namespace Tolen::LanguageServer {

/// Where in a source somebody types, and so what can stand there.
struct CompletionPlace {
    enum Kind {
        kKind_Nothing,       ///< comments, numbers, names of what is being declared
        kKind_Directive,     ///< the first word of a line with "#"
        kKind_DefineName,    ///< behind "#ifdef" and the like
        kKind_FileName,      ///< in the quotes of a directive
        kKind_Outside,       ///< where a class, an interface or a function begins
        kKind_InterfaceName, ///< behind "class X :"
        kKind_Class,         ///< where something in a class begins
        kKind_Interface,     ///< where a method of an interface begins
        kKind_InputType,     ///< behind "input"
        kKind_InputValue,    ///< behind the "=" of an input
        kKind_Type,          ///< of a parameter, or behind "static", "const" and the like
        kKind_Member,        ///< behind a dot
        kKind_Code,
    };

    Kind kind = kKind_Nothing;
    Language::SourceRange prefix; ///< what has been typed of the word, up to the place
    std::size_t dot = 0;          ///< the token of the dot before members
    std::string type;             ///< of the input whose value is asked for
};

CompletionPlace FindCompletionPlace(const Source& source, std::size_t offset);

} // namespace Tolen::LanguageServer
