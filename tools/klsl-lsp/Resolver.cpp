#include "Resolver.h"

#include "Call.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Tolen::LanguageServer {

using Language::Builtin;
using Language::SourceRange;
using Language::SourceToken;
using Language::Symbol;

namespace {

bool IsVariable(const Symbol& symbol) {
    return symbol.kind == Symbol::kKind_Input || symbol.kind == Symbol::kKind_Member ||
           symbol.kind == Symbol::kKind_Coord;
}

bool IsLocal(const Symbol& symbol) {
    return symbol.kind == Symbol::kKind_Parameter || symbol.kind == Symbol::kKind_Local;
}

/// Whether @p type is one of vec2 to vec4, ivec2 to ivec4 and bvec2 to bvec4.
bool IsVectorType(const std::string& type) {
    const std::size_t vec = type.find("vec");
    const bool hasPrefix = vec == 0 || (vec == 1 && (type[0] == 'i' || type[0] == 'b'));
    return hasPrefix && type.size() == vec + 4 && type.back() >= '2' && type.back() <= '4';
}

Receiver MakeVectorReceiver(const std::string& type) {
    return IsVectorType(type) ? Receiver{Receiver::kKind_Vector, {}, type} : Receiver();
}

const Symbol* FindNamed(const std::vector<Symbol>& symbols, const SourceRange& name,
                        const Symbol*& pOwner) {
    for (const Symbol& symbol : symbols) {
        if (symbol.nameRange == name) {
            return &symbol;
        }
        if (symbol.range.Contains(name.begin)) {
            const Symbol* pOwnerInside = &symbol;
            if (const Symbol* const found = FindNamed(symbol.children, name, pOwnerInside)) {
                pOwner = pOwnerInside;
                return found;
            }
        }
    }
    return nullptr;
}

/// Keeps the functions that a call with @p count arguments fits, unless that is none.
void KeepFitting(std::vector<Declared>& functions, std::optional<std::size_t> count) {
    const auto fits = [count](const Declared& declared) {
        return CountParameters(*declared.pSymbol) == *count;
    };
    if (count.has_value() && std::any_of(functions.begin(), functions.end(), fits)) {
        std::erase_if(functions, [&fits](const Declared& declared) { return !fits(declared); });
    }
}

std::vector<Declared> ListChildren(const Declared& container, const Library::Predicate& predicate) {
    std::vector<Declared> list;
    if (container.pSymbol != nullptr) {
        for (const Symbol& child : container.pSymbol->children) {
            if (predicate(child)) {
                list.push_back({container.pSource, &child, container.pSymbol});
            }
        }
    }
    return list;
}

} // namespace

std::size_t CountParameters(const Symbol& function) {
    return static_cast<std::size_t>(
        std::count_if(function.children.begin(), function.children.end(),
                      [](const Symbol& child) { return child.kind == Symbol::kKind_Parameter; }));
}

Resolver::Resolver(const Workspace& workspace, const std::vector<SourcePtr>& sources,
                   const SourcePtr& pSource)
    : _workspace(workspace), _library(workspace, sources, pSource) {}

std::vector<Meaning> Resolver::Resolve(const SourceRange& word) const {
    return _Resolve(word, CountArguments(GetSource(), GetSource().FindTokenAfter(word.begin)));
}

std::vector<Meaning> Resolver::ResolveCalled(const SourceRange& word) const {
    return _Resolve(word, std::nullopt);
}

std::vector<Meaning> Resolver::_Resolve(const SourceRange& word,
                                        std::optional<std::size_t> count) const {
    const std::string name(GetSource().text.GetText(word));
    std::vector<Declared> found = _FindDeclared(word, name);
    KeepFitting(found, count);
    std::vector<Meaning> meanings;
    meanings.reserve(found.size() + 1);
    for (Declared& declared : found) {
        meanings.push_back({std::move(declared), nullptr});
    }
    const Builtin* const builtin = _FindBuiltin(name);
    const std::size_t index = GetSource().FindTokenAfter(word.begin);
    const std::optional<std::size_t> before = GetSource().FindPrevious(index);
    const bool isMember =
        before.has_value() && GetSource().GetText(GetSource().tokens[*before]) == ".";
    if (meanings.empty() && builtin != nullptr && !isMember) {
        meanings.push_back({{}, builtin});
    }
    return meanings;
}

std::vector<Declared> Resolver::_FindDeclared(const SourceRange& word,
                                              const std::string& name) const {
    const Source& source = GetSource();
    if (Declared declaration = _FindDeclaration(word); declaration.pSymbol != nullptr) {
        return {declaration};
    }
    if (Declared define = _library.FindDefine(name, word.begin); define.pSymbol != nullptr) {
        return {define};
    }
    const std::size_t index = source.FindTokenAfter(word.begin);
    if (source.tokens[index].kind != SourceToken::kKind_Word) {
        // In directives names stand for what they will mean in the lines that they are put in.
        const bool isDirective = source.tokens[index].kind == SourceToken::kKind_Directive;
        return isDirective ? _FindUnqualified(name, word.begin, true) : std::vector<Declared>();
    }
    const std::optional<std::size_t> before = source.FindPrevious(index);
    if (before.has_value() && source.GetText(source.tokens[*before]) == ".") {
        std::vector<Declared> methods = ListMethods(FindReceiver(*before));
        std::erase_if(methods,
                      [&name](const Declared& method) { return method.pSymbol->name != name; });
        return methods;
    }
    const std::optional<std::size_t> after = source.FindNext(index);
    const bool isCalled = after.has_value() && source.GetText(source.tokens[*after]) == "(";
    return _FindUnqualified(name, word.begin, isCalled);
}

std::vector<Declared> Resolver::_FindUnqualified(const std::string& name, std::size_t offset,
                                                 bool isCalled) const {
    if (isCalled) {
        if (std::vector<Declared> called = _FindCalled(name, offset); !called.empty()) {
            return called;
        }
    }
    if (Declared variable = _FindVariable(name, offset); variable.pSymbol != nullptr) {
        return {variable};
    }
    if (Declared type = _library.FindType(name); type.pSymbol != nullptr) {
        return {type};
    }
    return {};
}

Declared Resolver::_FindDeclaration(const SourceRange& name) const {
    const Symbol* pOwner = nullptr;
    const Symbol* const found = FindNamed(GetSource().outline.symbols, name, pOwner);
    return found == nullptr ? Declared() : Declared{_library.GetSource(), found, pOwner};
}

const Symbol* Resolver::_FindClass(std::size_t offset) const {
    const std::vector<const Symbol*> around = GetSource().outline.FindAround(offset);
    return !around.empty() && around.front()->kind == Symbol::kKind_Class ? around.front()
                                                                          : nullptr;
}

bool Resolver::_IsInStaticMethod(std::size_t offset) const {
    const std::vector<const Symbol*> around = GetSource().outline.FindAround(offset);
    return !around.empty() && around.back()->isStatic;
}

Declared Resolver::_FindVariable(const std::string& name, std::size_t offset) const {
    const auto isNamed = [&name](const Declared& declared) {
        return declared.pSymbol->name == name;
    };
    const Declared inClass{_library.GetSource(), _FindClass(offset), nullptr};
    // Variables of the class come before locals: a local doesn't hide them. Static methods see
    // static ones alone.
    const bool isStatic = _IsInStaticMethod(offset);
    const std::vector<Declared> variables = ListChildren(inClass, [isStatic](const Symbol& symbol) {
        return IsVariable(symbol) && (symbol.isStatic || !isStatic);
    });
    if (const auto found = std::find_if(variables.begin(), variables.end(), isNamed);
        found != variables.end()) {
        return *found;
    }
    const std::vector<Declared> locals = ListLocals(offset);
    if (const auto found = std::find_if(locals.begin(), locals.end(), isNamed);
        found != locals.end()) {
        return *found;
    }
    const std::vector<Declared> outputs = ListChildren(
        inClass, [](const Symbol& symbol) { return symbol.kind == Symbol::kKind_Output; });
    const auto found = std::find_if(outputs.begin(), outputs.end(), isNamed);
    return found == outputs.end() ? Declared() : *found;
}

std::vector<Declared> Resolver::_FindCalled(const std::string& name, std::size_t offset) const {
    const auto isCalled = [&name](const Symbol& symbol) {
        return symbol.IsFunction() && symbol.name == name;
    };
    const Declared inClass{_library.GetSource(), _FindClass(offset), nullptr};
    std::vector<Declared> found = ListChildren(inClass, isCalled);
    return found.empty() ? _library.Find(name, isCalled) : found;
}

std::vector<Declared> Resolver::ListLocals(std::size_t offset) const {
    std::vector<Declared> locals;
    for (const Symbol* const around : GetSource().outline.FindAround(offset)) {
        for (const Symbol& symbol : around->children) {
            if (IsLocal(symbol) && symbol.bodyRange.Contains(offset)) {
                locals.push_back({_library.GetSource(), &symbol, around});
            }
        }
    }
    // What is declared last is seen in the innermost block.
    std::reverse(locals.begin(), locals.end());
    std::set<std::string> names;
    std::erase_if(locals, [&names](const Declared& local) {
        return !names.insert(local.pSymbol->name).second;
    });
    return locals;
}

Receiver Resolver::FindReceiver(std::size_t dot) const {
    const Source& source = GetSource();
    std::optional<std::size_t> index = source.FindPrevious(dot);
    const bool isElement = index.has_value() && source.GetText(source.tokens[*index]) == "]";
    if (isElement) {
        const std::optional<std::size_t> opening = FindOpening(source, *index);
        index = opening.has_value() ? source.FindPrevious(*opening) : std::nullopt;
    }
    if (!index.has_value() || source.tokens[*index].kind != SourceToken::kKind_Word) {
        return {};
    }
    const std::optional<std::size_t> before = source.FindPrevious(*index);
    if (before.has_value() && source.GetText(source.tokens[*before]) == ".") {
        return {};
    }
    const SourceToken& token = source.tokens[*index];
    const std::string name(source.GetText(token));
    const Declared variable = _FindVariable(name, token.range.begin);
    if (variable.pSymbol != nullptr) {
        return _MakeReceiver(*variable.pSymbol, isElement);
    }
    return isElement ? Receiver() : _MakeReceiver(name);
}

const Builtin* Resolver::_FindBuiltin(const std::string& name) const {
    if (const Builtin* const builtin = Language::FindBuiltin(name)) {
        return builtin;
    }
    const std::vector<Builtin>& variables = _workspace.GetClientVariables();
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&name](const Builtin& it) { return it.name == name; });
    return found == variables.end() ? nullptr : &*found;
}

/// What a variable, or an element of it, is to a dot.
Receiver Resolver::_MakeReceiver(const Symbol& variable, bool isElement) const {
    const bool isArray = !variable.brackets.empty();
    if (isArray && !isElement) {
        return {Receiver::kKind_Array, {}, {}};
    }
    const Declared type =
        variable.kind == Symbol::kKind_Input ? _library.FindType(variable.type) : Declared();
    if (type.pSymbol != nullptr) {
        return {Receiver::kKind_Shader, type, {}};
    }
    return isArray == isElement ? MakeVectorReceiver(variable.type) : Receiver();
}

/// What a name is to a dot that is no variable of the source.
Receiver Resolver::_MakeReceiver(const std::string& name) const {
    const Declared type = _library.FindType(name);
    if (type.pSymbol != nullptr) {
        return {Receiver::kKind_Class, type, {}};
    }
    const Builtin* const builtin = _FindBuiltin(name);
    if (builtin == nullptr || builtin->kind != Builtin::kKind_Variable ||
        builtin->signatures.empty()) {
        return {};
    }
    const std::string& signature = builtin->signatures.front();
    return MakeVectorReceiver(signature.substr(0, signature.find(' ')));
}

std::vector<Declared> Resolver::ListMethods(const Receiver& receiver) const {
    if (receiver.kind != Receiver::kKind_Shader && receiver.kind != Receiver::kKind_Class) {
        return {};
    }
    const bool isStatic = receiver.kind == Receiver::kKind_Class;
    return ListChildren(receiver.type, [isStatic](const Symbol& symbol) {
        return symbol.IsFunction() && (symbol.isStatic || !isStatic);
    });
}

} // namespace Tolen::LanguageServer
