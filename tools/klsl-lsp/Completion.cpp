#include "Completion.h"

#include "CompletionPlace.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Tolen::LanguageServer {

using Language::Builtin;
using Language::Symbol;

namespace {

// Numbers of the protocol's CompletionItemKind.
constexpr int kKind_Constructor = 4;
constexpr int kKind_Field = 5;
constexpr int kKind_Keyword = 14;
constexpr int kKind_File = 17;
constexpr int kKind_Folder = 19;

using Words = std::vector<std::string_view>;

const Words kDirectives = {"#define", "#else",   "#endif",   "#ifdef",
                           "#ifndef", "#import", "#include", "#undef"};
const Words kWordsOutside = {"class", "interface"};
const Words kWordsInClass = {"const", "coord",  "input",  "normal",
                             "out",   "output", "static", "tangent"};
const Words kWordsOfParameters = {"in", "inout", "out"};
const Words kWordsInCode = {"break", "const", "continue", "do",   "else", "false",
                            "for",   "if",    "return",   "true", "while"};
const Words kWordsInValues = {"false", "true"};

/// Fills a list for one place.
class Collector {
public:
    Collector(const Resolver& resolver, const Workspace& workspace, CompletionList& list)
        : _resolver(resolver), _workspace(workspace), _list(list) {}

    void Collect(const CompletionPlace& place);

private:
    void _AddWords(const Words& words);
    void _AddBuiltins(Builtin::Kind kind);
    void _AddTypes() { _AddBuiltins(Builtin::kKind_Type); }
    void _AddDeclared(const Library::Predicate& predicate);
    void _AddInterfaces();
    void _AddConstructors(const std::string& type);
    void _AddMembers(std::size_t dot);
    void _AddComponents(const std::string& vectorType);
    void _AddClassVariables(std::size_t offset);
    void _AddCode(std::size_t offset);
    void _AddFiles(std::string_view begun);

    const Resolver& _resolver;
    const Workspace& _workspace;
    CompletionList& _list;
};

void Collector::Collect(const CompletionPlace& place) {
    switch (place.kind) {
    case CompletionPlace::kKind_Nothing:
        break;
    case CompletionPlace::kKind_Directive:
        for (const std::string_view directive : kDirectives) {
            _list.AddWord(std::string(directive), kKind_Keyword, {}, CompletionList::kRank_Keyword);
        }
        break;
    case CompletionPlace::kKind_DefineName:
        _AddDeclared([](const Symbol& symbol) { return symbol.kind == Symbol::kKind_Define; });
        break;
    case CompletionPlace::kKind_FileName:
        _AddFiles(_resolver.GetSource().text.GetText(place.prefix));
        break;
    case CompletionPlace::kKind_Outside:
        _AddWords(kWordsOutside);
        _AddTypes();
        break;
    case CompletionPlace::kKind_InterfaceName:
        _AddInterfaces();
        break;
    case CompletionPlace::kKind_Class:
        _AddWords(kWordsInClass);
        _AddTypes();
        break;
    case CompletionPlace::kKind_Interface:
        _AddTypes();
        break;
    case CompletionPlace::kKind_InputType:
        _AddDeclared([](const Symbol& symbol) { return symbol.IsContainer(); });
        _AddTypes();
        break;
    case CompletionPlace::kKind_InputValue:
        _AddConstructors(place.type);
        break;
    case CompletionPlace::kKind_Type:
        _AddWords(kWordsOfParameters);
        _AddTypes();
        break;
    case CompletionPlace::kKind_Member:
        _AddMembers(place.dot);
        break;
    case CompletionPlace::kKind_Code:
        _AddCode(place.prefix.begin);
        break;
    }
}

void Collector::_AddWords(const Words& words) {
    for (const std::string_view word : words) {
        if (const Builtin* const builtin = Language::FindBuiltin(std::string(word))) {
            _list.Add(Meaning{{}, builtin}, CompletionList::kRank_Keyword);
        } else {
            _list.AddWord(std::string(word), kKind_Keyword, {}, CompletionList::kRank_Keyword);
        }
    }
}

void Collector::_AddBuiltins(Builtin::Kind kind) {
    for (const Builtin& builtin : Language::GetBuiltins()) {
        if (builtin.kind == kind) {
            _list.Add(Meaning{{}, &builtin}, CompletionList::kRank_Builtin);
        }
    }
}

void Collector::_AddDeclared(const Library::Predicate& predicate) {
    for (const Declared& declared : _resolver.GetLibrary().List(predicate)) {
        _list.Add(declared, CompletionList::kRank_Library);
    }
}

void Collector::_AddInterfaces() {
    _AddDeclared([](const Symbol& symbol) { return symbol.kind == Symbol::kKind_Interface; });
}

/// What an input of a type can start with: constructors of shaders that fit, or of values.
void Collector::_AddConstructors(const std::string& type) {
    const Declared declared = _resolver.GetLibrary().FindType(type);
    if (declared.pSymbol == nullptr) {
        _AddTypes();
        _AddWords(kWordsInValues);
        return;
    }
    const auto fits = [&type](const Symbol& symbol) {
        return symbol.kind == Symbol::kKind_Class && (symbol.name == type || symbol.type == type);
    };
    for (const Declared& shader : _resolver.GetLibrary().List(fits)) {
        _list.AddWord(shader.pSymbol->name + "()", kKind_Constructor, shader.pSymbol->signature,
                      CompletionList::kRank_Library);
    }
}

void Collector::_AddMembers(std::size_t dot) {
    const Receiver receiver = _resolver.FindReceiver(dot);
    if (receiver.kind == Receiver::kKind_Array) {
        _list.AddWord("length", kKind_Field, "int length", CompletionList::kRank_Class);
    } else if (receiver.kind == Receiver::kKind_Vector) {
        _AddComponents(receiver.typeName);
    }
    for (const Declared& method : _resolver.ListMethods(receiver)) {
        _list.Add(method, CompletionList::kRank_Class);
    }
}

void Collector::_AddComponents(const std::string& vectorType) {
    const auto count = static_cast<std::size_t>(vectorType.back() - '0');
    const std::string prefix = vectorType.substr(0, vectorType.find("vec"));
    const std::string one = prefix == "i" ? "int" : prefix == "b" ? "bool" : "float";
    for (const std::string_view names : {"xyzw", "rgba", "stpq"}) {
        for (std::size_t length = 1; length <= std::min<std::size_t>(count, names.size());
             ++length) {
            const std::string type = length == 1 ? one : prefix + "vec" + std::to_string(length);
            _list.AddWord(std::string(names.substr(length - 1, 1)), kKind_Field, one,
                          CompletionList::kRank_Class);
            if (length > 1) {
                _list.AddWord(std::string(names.substr(0, length)), kKind_Field, type,
                              CompletionList::kRank_Library);
            }
        }
    }
}

void Collector::_AddClassVariables(std::size_t offset) {
    const Source& source = _resolver.GetSource();
    const std::vector<const Symbol*> around = source.outline.FindAround(offset);
    if (around.empty() || around.front()->kind != Symbol::kKind_Class) {
        return;
    }
    const bool isStatic = around.back()->isStatic;
    for (const Symbol& symbol : around.front()->children) {
        if (symbol.isStatic || !isStatic) {
            _list.Add(Declared{_resolver.GetLibrary().GetSource(), &symbol, around.front()},
                      CompletionList::kRank_Class);
        }
    }
}

void Collector::_AddCode(std::size_t offset) {
    _AddClassVariables(offset);
    for (const Declared& local : _resolver.ListLocals(offset)) {
        _list.Add(local, CompletionList::kRank_Local);
    }
    _AddDeclared([](const Symbol& symbol) {
        const bool hasStatics =
            std::any_of(symbol.children.begin(), symbol.children.end(),
                        [](const Symbol& child) { return child.IsFunction() && child.isStatic; });
        return symbol.kind == Symbol::kKind_Function || symbol.kind == Symbol::kKind_Define ||
               (symbol.kind == Symbol::kKind_Class && hasStatics);
    });
    _AddBuiltins(Builtin::kKind_Function);
    _AddBuiltins(Builtin::kKind_Variable);
    for (const Builtin& variable : _workspace.GetClientVariables()) {
        _list.Add(Meaning{{}, &variable}, CompletionList::kRank_Builtin);
    }
    _AddTypes();
    _AddWords(kWordsInCode);
}

/// The files and folders that a path can go on with.
void Collector::_AddFiles(std::string_view begun) {
    namespace fs = std::filesystem;
    constexpr std::size_t limitEntries = 10000;
    const std::size_t slash = begun.rfind('/');
    const std::string_view folder =
        slash == std::string_view::npos ? "" : begun.substr(0, slash + 1);
    std::size_t count = 0;
    for (const std::string& searchPath : _workspace.GetSearchPaths()) {
        std::error_code error;
        fs::directory_iterator entry(fs::path(searchPath) / folder, error);
        for (; !error && entry != fs::directory_iterator() && ++count < limitEntries;
             entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            std::error_code unknown;
            if (entry->is_directory(unknown)) {
                if (!name.starts_with('.')) {
                    _list.AddWord(name, kKind_Folder, {}, CompletionList::kRank_Library);
                }
            } else if (name.ends_with(".klsl")) {
                _list.AddWord(name, kKind_File, {}, CompletionList::kRank_Local);
            }
        }
    }
}

} // namespace

Json MakeCompletions(const Resolver& resolver, const Workspace& workspace,
                     const Positions& positions, const CompletionStyle& style, std::size_t offset) {
    const Source& source = resolver.GetSource();
    const CompletionPlace place = FindCompletionPlace(source, offset);
    Language::SourceRange replaced = place.prefix;
    if (place.kind == CompletionPlace::kKind_FileName) {
        const std::size_t slash = source.text.GetText(replaced).rfind('/');
        replaced.begin += slash == std::string_view::npos ? 0 : slash + 1;
    }
    CompletionList list(positions.MakeRange(source.text, replaced), style);
    Collector(resolver, workspace, list).Collect(place);
    return list.Take();
}

} // namespace Tolen::LanguageServer
