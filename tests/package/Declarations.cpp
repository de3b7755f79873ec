#include "Declarations.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string_view>
#include <vector>

namespace Tolen::Tests {

namespace {

using Tokens = std::vector<std::string>;

constexpr std::size_t kNone = std::string::npos;

bool _IsWord(const std::string& token) {
    return std::isalnum(static_cast<unsigned char>(token.front())) != 0 || token.front() == '_';
}

/// The lines from files below @p folder.
std::string _KeepLinesOf(const std::string& text, const std::string& folder) {
    std::istringstream lines(text);
    std::string kept;
    bool isKept = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ")) {
            isKept = line.find('"' + folder + '/') != kNone;
        } else if (isKept) {
            kept += line + '\n';
        }
    }
    return kept;
}

Tokens _Split(const std::string& text) {
    Tokens tokens;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t first = at;
        const bool isNumber = std::isdigit(static_cast<unsigned char>(text[at])) != 0;
        const auto isWord = [&] {
            return at < text.size() &&
                   (_IsWord(std::string(1, text[at])) || (isNumber && text[at] == '\''));
        };
        if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
            ++at;
            continue;
        }
        if (isWord()) {
            while (isWord()) {
                ++at;
            }
        } else if (text[at] == '"' || text[at] == '\'') {
            const char quote = text[at++];
            while (text.at(at) != quote) {
                at += text[at] == '\\' ? 2U : 1U;
            }
            ++at;
        } else if (text.compare(at, 2, "::") == 0 || text.compare(at, 2, "->") == 0) {
            at += 2;
        } else {
            ++at;
        }
        tokens.push_back(text.substr(first, at - first));
    }
    return tokens;
}

/// Behind the bracket that closes the one at @p open.
std::size_t _SkipBrackets(const Tokens& tokens, std::size_t open, const char* opening,
                          const char* closing) {
    int depth = 0;
    for (std::size_t at = open; at < tokens.size(); ++at) {
        depth += tokens[at] == opening ? 1 : 0;
        depth -= tokens[at] == closing ? 1 : 0;
        if (depth == 0) {
            return at + 1;
        }
    }
    return tokens.size();
}

Tokens _WithoutAttributes(const Tokens& tokens) {
    Tokens rest;
    for (std::size_t at = 0; at < tokens.size();) {
        if (tokens[at] == "__attribute__" || tokens[at] == "alignas") {
            at = _SkipBrackets(tokens, at + 1, "(", ")");
        } else if (tokens[at] == "[" && at + 1 < tokens.size() && tokens[at + 1] == "[") {
            at = _SkipBrackets(tokens, at, "[", "]");
        } else {
            rest.push_back(tokens[at++]);
        }
    }
    return rest;
}

/// One pass over the tokens, with the declaration so far as the head.
class Reader {
public:
    explicit Reader(Tokens tokens) : _tokens(std::move(tokens)) {}

    Declarations Read() {
        while (_at < _tokens.size()) {
            const std::string& token = _tokens[_at];
            if (token == "{") {
                _OpenBlock();
                continue;
            }
            ++_at;
            if (token == "}") {
                _scopes.pop_back();
                _head.clear();
            } else if (token == ";") {
                _EndDeclaration(false);
            } else if (token == ":" && _head.size() == 1 && _IsAccess(_head.front())) {
                _head.clear();
            } else {
                _head.push_back(token);
            }
        }
        for (const std::string& name : _definedOutside) {
            _found.needed.erase(name);
        }
        return std::move(_found);
    }

private:
    struct Scope {
        std::string name; ///< empty for what adds nothing to names
        bool isClass;
        bool isTemplate;
    };

    static bool _IsAccess(const std::string& word) {
        return word == "public" || word == "protected" || word == "private";
    }

    static bool _IsClassKey(const std::string& word) {
        return word == "class" || word == "struct" || word == "union";
    }

    bool _Has(const char* token) const {
        return std::find(_head.begin(), _head.end(), token) != _head.end();
    }

    void _OpenBlock() {
        const auto count = [this](const char* token) {
            return std::count(_head.begin(), _head.end(), token);
        };
        const std::size_t keyword = _FindKeyword();
        const std::string word = keyword < _head.size() ? _head[keyword] : "";
        const bool isArgument = count("(") != count(")");
        if (!isArgument && (word == "namespace" || word == "extern")) {
            std::string name;
            for (std::size_t at = keyword + 1; word == "namespace" && at < _head.size(); ++at) {
                name += _head[at];
            }
            _Enter({name, false, false});
        } else if (!isArgument && _IsClassKey(word)) {
            const Scope scope{_head.at(keyword + 1), true, keyword != 0};
            _found.classes.insert(_Qualify(scope.name));
            _Enter(scope);
        } else {
            const bool isBody =
                !isArgument && word != "enum" && _FindName() != kNone && !_IsMemberInitialiser();
            _at = _SkipBrackets(_tokens, _at, "{", "}");
            _head.emplace_back("}");
            if (isBody) {
                _EndDeclaration(true);
            }
        }
    }

    void _Enter(Scope scope) {
        _scopes.push_back(std::move(scope));
        _head.clear();
        ++_at;
    }

    /// Where the declaration begins, behind the parameters of a template.
    std::size_t _FindKeyword() const {
        std::size_t at = 0;
        while (at < _head.size() && (_head[at] == "template" || _head[at] == "inline")) {
            at = _head[at] == "template" ? _SkipBrackets(_head, at + 1, "<", ">") : at + 1;
        }
        return at;
    }

    /// Whether the block in `Class() : _field{...}` comes.
    bool _IsMemberInitialiser() const {
        const auto arguments = std::find(_head.begin(), _head.end(), ")");
        return std::find(arguments, _head.end(), ":") != _head.end() && _IsWord(_head.back());
    }

    /// The bracket behind the name of a function. @return kNone where no function is declared
    std::size_t _FindName() const {
        const auto op = std::find(_head.begin(), _head.end(), "operator");
        if (op != _head.end()) {
            // Its first bracket may be the name: operator()(). Something always follows the word.
            // cppcheck-suppress derefInvalidIteratorRedundantCheck
            return static_cast<std::size_t>(std::find(op + 2, _head.end(), "(") - _head.begin());
        }
        int depth = 0;
        for (std::size_t at = _FindKeyword(); at < _head.size(); ++at) {
            depth += _head[at] == "<" ? 1 : 0;
            depth -= _head[at] == ">" ? 1 : 0;
            if (depth == 0 && _head[at] == "=") {
                return kNone;
            }
            if (depth == 0 && _head[at] == "(") {
                return at;
            }
        }
        return kNone;
    }

    void _EndDeclaration(bool hasBody) {
        const std::size_t keyword = _FindKeyword();
        if (keyword < _head.size()) {
            static constexpr std::array kOther = {"using", "typedef", "friend", "static_assert",
                                                  "enum"};
            const std::string& word = _head[keyword];
            const bool isMember = !_scopes.empty() && _scopes.back().isClass;
            if (_IsClassKey(word)) {
                if (isMember) {
                    _found.classes.insert(_Qualify(_head.at(keyword + 1)));
                }
            } else if (std::find(kOther.begin(), kOther.end(), word) == kOther.end()) {
                _AddFunction(keyword, hasBody);
            }
        }
        _head.clear();
    }

    void _AddFunction(std::size_t keyword, bool hasBody) {
        const std::size_t bracket = _FindName();
        if (bracket == kNone || bracket <= keyword) {
            return;
        }
        const std::string own = _GetName(bracket);
        const std::string name = _Qualify(own);
        _found.functions.insert(name);
        // `= 0`, `= default` and `= delete` leave nothing to a library.
        const bool isSettled = hasBody || (_head.size() > 1 && _head[_head.size() - 2] == "=");
        const bool isTemplate =
            keyword != 0 || std::any_of(_scopes.begin(), _scopes.end(),
                                        [](const Scope& s) { return s.isTemplate; });
        if (!isSettled && !isTemplate) {
            _found.needed.insert(name);
            if (_Has("virtual") || _Has("override")) {
                _found.tables.insert(name.substr(0, name.rfind("::")));
            }
        }
        if (hasBody && own.find("::") != kNone) {
            _definedOutside.insert(name);
        }
    }

    /// What stands before the @p bracket: `operator<<`, `~Class`, or `Class<T>::Function`.
    std::string _GetName(std::size_t bracket) const {
        const auto op = std::find(_head.begin(), _head.end(), "operator");
        std::string name;
        if (op != _head.end()) {
            name = "operator";
            for (std::size_t at = static_cast<std::size_t>(op - _head.begin()) + 1; at < bracket;
                 ++at) {
                name += (_IsWord(_head[at]) ? " " : "") + _head[at];
            }
            return name;
        }
        std::size_t at = bracket - 1;
        name = _head[at];
        if (at > 0 && _head[at - 1] == "~") {
            name.insert(0, _head[--at]);
        }
        while (at > 1 && _head[at - 1] == "::") {
            at -= 2;
            for (int depth = _head[at] == ">" ? 1 : 0; depth > 0 && at > 0;) {
                --at;
                depth += _head[at] == ">" ? 1 : 0;
                depth -= _head[at] == "<" ? 1 : 0;
                at -= depth == 0 ? 1U : 0U;
            }
            name.insert(0, _head[at] + "::");
        }
        return name;
    }

    std::string _Qualify(const std::string& name) const {
        std::string qualified;
        for (const Scope& scope : _scopes) {
            qualified += scope.name.empty() ? "" : scope.name + "::";
        }
        return qualified + name;
    }

    Tokens _tokens;
    std::size_t _at = 0;
    Tokens _head;
    std::vector<Scope> _scopes;
    std::set<std::string> _definedOutside;
    Declarations _found;
};

/// The name without the arguments of templates and functions.
std::string _WithoutArguments(const std::string& text) {
    static constexpr std::string_view kOperator = "operator";
    static constexpr std::string_view kAnonymous = "(anonymous namespace)";
    static constexpr std::string_view kTag = "[abi:cxx11]";
    std::string name;
    int depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view rest = std::string_view(text).substr(at);
        if (depth == 0 && rest.starts_with(kOperator) &&
            (name.empty() || !_IsWord(name.substr(name.size() - 1)))) {
            return name + std::string(rest.substr(0, rest.find('(', kOperator.size() + 1)));
        }
        if (rest.starts_with(kAnonymous)) {
            name += kAnonymous;
            at += kAnonymous.size() - 1;
        } else if (rest.starts_with(kTag)) {
            at += kTag.size() - 1;
        } else if (depth == 0 && text[at] == '(') {
            break;
        } else if (text[at] == '<') {
            ++depth;
        } else if (text[at] == '>') {
            --depth;
        } else if (depth == 0) {
            // What is before a blank was the type of a result.
            name = text[at] == ' ' ? "" : name + text[at];
        }
    }
    return name;
}

} // namespace

Declarations ReadDeclarations(const std::string& text, const std::string& folder) {
    return Reader(_WithoutAttributes(_Split(_KeepLinesOf(text, folder)))).Read();
}

SymbolOwner FindSymbolOwner(const std::string& symbol) {
    static constexpr std::array<std::string_view, 4> kTables = {
        "vtable for ", "VTT for ", "typeinfo for ", "typeinfo name for "};
    static constexpr std::array<std::string_view, 2> kThunks = {"non-virtual thunk to ",
                                                                "virtual thunk to "};
    for (const std::string_view prefix : kTables) {
        if (symbol.starts_with(prefix)) {
            return {_WithoutArguments(symbol.substr(prefix.size())), true};
        }
    }
    for (const std::string_view prefix : kThunks) {
        if (symbol.starts_with(prefix)) {
            return {_WithoutArguments(symbol.substr(prefix.size())), false};
        }
    }
    return {_WithoutArguments(symbol), false};
}

} // namespace Tolen::Tests
