#pragma once

#include "language/SourceText.h"
#include "language/SourceToken.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Tolen::Language {

/// Something that a source declares, with what it holds.
struct Symbol {
    enum Kind : std::uint8_t {
        kKind_Define, ///< a name of `#define`
        kKind_Class,
        kKind_Interface,
        kKind_Function, ///< a free one
        kKind_Method,   ///< of a class, or of an interface and then without a body
        kKind_Input,
        kKind_Member,
        kKind_Coord,
        kKind_Output,
        kKind_Parameter,
        kKind_Local,
    };

    Kind kind = kKind_Class;
    bool isStatic = false;
    bool isConst = false;
    /// Whether the closing brace is missing; it ends then where something else begins.
    bool isCut = false;
    std::string name;
    /// Of values: the type without brackets, such as "vec3" or "IPattern"; of functions what they
    /// return; of a class the interface that it implements, empty when there is none.
    std::string type;
    std::string brackets; ///< of arrays: "[]" or "[4]"; empty for one value
    std::string value;    ///< what stands behind "=", or behind the name of a define, as written
    /// One line as a reader would like to see it: "static input vec3 direction = vec3(0.0, 1.0,
    /// 0.0)", "float At(vec2 place)", "class Rings : Pattern".
    std::string signature;
    /// The text of the comment directly before it, or behind it on its line, without the comment's
    /// signs; lines are joined by line feeds. Empty when there is none.
    std::string comment;
    SourceRange range; ///< all of it
    SourceRange nameRange;
    /// With its braces; empty without a body. Of locals and parameters: where they are seen.
    SourceRange bodyRange;
    std::vector<Symbol> children; ///< in the order of the source

    /// The first child of a name; null when there is none.
    const Symbol* FindChild(const std::string& childName) const;

    bool IsContainer() const { return kind == kKind_Class || kind == kKind_Interface; }
    bool IsFunction() const { return kind == kKind_Function || kind == kKind_Method; }
};

/// A file that a source asks for.
struct Inclusion {
    std::string name;
    bool isImport = false;
    SourceRange range; ///< of the name, without its quotes
};

/// What a source declares. Made of the tokens alone, so that it also comes of texts that are wrong
/// or half written: a declaration that can't be read is left out, and the next one taken.
/// Conditions of directives are not followed: all their branches count.
struct Outline {
    std::vector<Symbol> symbols; ///< classes, interfaces, functions and defines
    std::vector<Inclusion> inclusions;
    std::string headComment; ///< the comments at the top of the file, without their signs

    /// The class, interface or function around @p offset and the method in it, from outside.
    std::vector<const Symbol*> FindAround(std::size_t offset) const;
    const Symbol* Find(const std::string& name) const;
};

/// @param tokens of Tokenize on the same text
Outline MakeOutline(const SourceText& text, const std::vector<SourceToken>& tokens);

} // namespace Tolen::Language
