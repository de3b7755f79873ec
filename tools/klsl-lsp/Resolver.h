#pragma once

#include "Library.h"

#include "language/Builtins.h"

#include <optional>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// What a name means: something declared, or a built-in.
struct Meaning {
    Declared declared;
    const Language::Builtin* pBuiltin = nullptr;

    bool operator==(const Meaning&) const = default;
};

/// What stands before a dot.
struct Receiver {
    enum Kind {
        kKind_Unknown,
        kKind_Shader, ///< an input, or a cell of one; has the methods of its class or interface
        kKind_Array,  ///< has a length
        kKind_Vector, ///< has components
        kKind_Class,  ///< has static methods
    };

    Kind kind = kKind_Unknown;
    Declared type;        ///< of shaders and classes
    std::string typeName; ///< of vectors
};

/// Finds out what names in a source mean.
class Resolver {
public:
    /// @param workspace borrowed
    Resolver(const Workspace& workspace, const std::vector<SourcePtr>& sources,
             const SourcePtr& pSource);

    const Library& GetLibrary() const { return _library; }
    const Source& GetSource() const { return *_library.GetSource(); }

    /// @param word as Source::FindWord has found it
    /// @return several for methods and functions that a call fits; none when nothing is known
    std::vector<Meaning> Resolve(const Language::SourceRange& word) const;

    /// What a name can mean that is being called, whatever arguments it has so far.
    std::vector<Meaning> ResolveCalled(const Language::SourceRange& word) const;

    /// What the dot at a token follows.
    Receiver FindReceiver(std::size_t dot) const;
    /// What can stand behind the dot.
    std::vector<Declared> ListMethods(const Receiver& receiver) const;

    /// The parameters and locals that are seen at @p offset, inner ones first, one of each name.
    std::vector<Declared> ListLocals(std::size_t offset) const;

private:
    Declared _FindDeclaration(const Language::SourceRange& name) const;
    /// The class around @p offset, if any.
    const Language::Symbol* _FindClass(std::size_t offset) const;
    bool _IsInStaticMethod(std::size_t offset) const;
    Declared _FindVariable(const std::string& name, std::size_t offset) const;
    std::vector<Declared> _FindCalled(const std::string& name, std::size_t offset) const;
    /// @param count of the arguments, to choose by
    std::vector<Meaning> _Resolve(const Language::SourceRange& word,
                                  std::optional<std::size_t> count) const;
    std::vector<Declared> _FindDeclared(const Language::SourceRange& word,
                                        const std::string& name) const;
    std::vector<Declared> _FindUnqualified(const std::string& name, std::size_t offset,
                                           bool isCalled) const;

    /// What a name means that nothing declares.
    const Language::Builtin* _FindBuiltin(const std::string& name) const;

    Receiver _MakeReceiver(const Language::Symbol& variable, bool isElement) const;
    Receiver _MakeReceiver(const std::string& name) const;

    const Workspace& _workspace;
    Library _library;
};

/// How many parameters a method or function has.
std::size_t CountParameters(const Language::Symbol& function);

} // namespace Tolen::LanguageServer
