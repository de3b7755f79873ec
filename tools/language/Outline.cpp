#include "language/Outline.h"

#include "language/CommentText.h"
#include "language/DeclarationReader.h"
#include "language/Nesting.h"

#include "DirectiveLine.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <utility>

namespace Tolen::Language {

namespace {

using Effects::DirectiveLine;

/// Goes once through the tokens of a source. What has begun and not ended is open: a container, a
/// function, and the local variables of it that are seen; each ends with the nesting that it is in.
class OutlineBuilder {
public:
    OutlineBuilder(const SourceText& text, const std::vector<SourceToken>& tokens)
        : _text(text), _tokens(tokens), _comments(text, tokens), _reader(text, tokens) {
        _outline.headComment = _ReadHead();
    }

    Outline Run() {
        for (std::size_t index = 0; index < _tokens.size(); ++index) {
            if (_tokens[index].kind == SourceToken::kKind_Directive) {
                _TakeDirective(index);
            } else if (!_tokens[index].IsComment()) {
                _TakeDeclaration(index);
                _Step(index);
            }
        }
        _CloseContainer(_text.GetText().size(), true);
        std::move(_defines.begin(), _defines.end(), std::back_inserter(_outline.symbols));
        std::stable_sort(
            _outline.symbols.begin(), _outline.symbols.end(),
            [](const Symbol& a, const Symbol& b) { return a.range.begin < b.range.begin; });
        return std::move(_outline);
    }

private:
    /// Containers begin outside of everything, wherever the text has them.
    static constexpr std::uint32_t kContainerDepth = 1;

    /// A local variable, by its position in the function's children.
    struct OpenLocal {
        std::size_t child;
        std::uint32_t depth; ///< the nesting that it ends with
    };

    std::string _ReadHead() const {
        std::size_t first = 0;
        while (first < _tokens.size() && _tokens[first].kind == SourceToken::kKind_Directive) {
            ++first;
        }
        std::size_t last = first;
        while (last < _tokens.size() && _tokens[last].IsComment()) {
            ++last;
        }
        // What stands directly above a declaration belongs to that, unless it is all there is.
        const bool isAbove =
            last < _tokens.size() && _tokens[last].kind != SourceToken::kKind_Directive;
        return _comments.Join(first, isAbove ? _comments.FindAbove(last) : last);
    }

    void _TakeDirective(std::size_t index) {
        const SourceRange& range = _tokens[index].range;
        const std::string_view line = _text.GetText(range);
        const DirectiveLine parsed = DirectiveLine::Parse(line);
        switch (parsed.directive) {
        case DirectiveLine::kDirective_Ifdef:
        case DirectiveLine::kDirective_Ifndef:
            _nesting.BeginCondition();
            break;
        case DirectiveLine::kDirective_Else:
            _nesting.NextBranch();
            _CloseWhatEnded(range.begin, true);
            break;
        case DirectiveLine::kDirective_Endif:
            _nesting.EndCondition();
            break;
        case DirectiveLine::kDirective_Define:
            _AddDefine(index, parsed);
            break;
        case DirectiveLine::kDirective_Include:
        case DirectiveLine::kDirective_Import:
            _AddInclusion(range, parsed);
            break;
        case DirectiveLine::kDirective_None:
        case DirectiveLine::kDirective_Undef:
            break;
        }
    }

    void _AddDefine(std::size_t index, const DirectiveLine& parsed) {
        if (parsed.argument.empty()) {
            return;
        }
        const SourceRange& range = _tokens[index].range;
        Symbol define;
        define.kind = Symbol::kKind_Define;
        define.name = parsed.argument;
        define.value = parsed.rest;
        define.signature = "#define " + define.name;
        define.signature += (define.value.empty() ? "" : " ") + define.value;
        define.range = range;
        const std::size_t name =
            _text.GetText().find(define.name, range.begin + std::strlen("#define"));
        define.nameRange = {name, name + define.name.size()};
        define.comment = _comments.Find(index, index + 1);
        _defines.push_back(std::move(define));
    }

    void _AddInclusion(const SourceRange& range, const DirectiveLine& parsed) {
        Inclusion inclusion;
        if (parsed.GetFileName(inclusion.name)) {
            const std::size_t name = _text.GetText().find('"', range.begin) + 1;
            inclusion.isImport = parsed.directive == DirectiveLine::kDirective_Import;
            inclusion.range = {name, name + inclusion.name.size()};
            _outline.inclusions.push_back(std::move(inclusion));
        }
    }

    /// Reads what begins with a token, if that can begin something here.
    void _TakeDeclaration(std::size_t index) {
        if (index < _declarationEnd) {
            return;
        }
        if (index == _declarationEnd && index > 0 && !_nesting.IsAtStart()) {
            // The end of what was read is missing.
            _nesting.EndStatement();
        }
        if (_reader.BeginsContainer(index)) {
            _CloseContainer(_tokens[index].range.begin, true);
            _nesting.CloseTo(0);
            _TakeContainer(index);
        } else if (!_hasFunction) {
            if (_nesting.IsAtStart() || _reader.BeginsForSure(index)) {
                _TakeMember(index);
            }
        } else if (_reader.BeginsForSure(index)) {
            // Never part of a body, whose end must be missing.
            _CloseFunction(_tokens[index].range.begin, true);
            _nesting.CloseTo(_hasContainer ? kContainerDepth : 0);
            _TakeMember(index);
        } else if (_BeginsLocal()) {
            _TakeLocal(index);
        }
    }

    bool _BeginsLocal() const {
        const Nesting::Frame& top = _nesting.GetTop();
        if (_nesting.IsAtStart()) {
            return _nesting.GetDepth() >= _functionDepth;
        }
        // The head of a loop: behind its bracket or a semicolon in it.
        const bool isHead =
            top.kind == Nesting::kKind_Group && _nesting.GetParent(top).kind == Nesting::kKind_Head;
        return isHead && (_previous == top.token || _text.GetText(_tokens[_previous].range) == ";");
    }

    void _TakeContainer(std::size_t index) {
        std::optional<Declaration> read = _reader.ReadContainer(index);
        if (!read) {
            return;
        }
        read->symbol.comment = _comments.Find(index, index);
        _outline.symbols.push_back(std::move(read->symbol));
        _declarationEnd = read->end;
        _hasContainer = read->hasBody;
    }

    void _TakeMember(std::size_t index) {
        const bool isInterface =
            _hasContainer && _outline.symbols.back().kind == Symbol::kKind_Interface;
        std::optional<Declaration> read = _reader.ReadMember(index, _hasContainer);
        if (!read || (isInterface && !read->symbol.IsFunction())) {
            return;
        }
        _nesting.EndStatement();
        _declarationEnd = read->end;
        read->symbol.comment = _comments.Find(index, read->last);
        std::vector<Symbol>& siblings =
            _hasContainer ? _outline.symbols.back().children : _outline.symbols;
        siblings.push_back(std::move(read->symbol));
        if (read->hasBody) {
            _hasFunction = true;
            _functionDepth = _nesting.GetDepth() + 1;
        }
    }

    void _TakeLocal(std::size_t index) {
        std::optional<Declaration> read = _reader.ReadLocal(index);
        if (!read) {
            return;
        }
        read->symbol.comment = _comments.Find(index, read->last);
        const Nesting::Frame& top = _nesting.GetTop();
        const std::uint32_t depth = top.kind == Nesting::kKind_Group ? top.depth - 1 : top.depth;
        std::vector<Symbol>& children = _GetFunction().children;
        _locals.push_back({children.size(), depth});
        children.push_back(std::move(read->symbol));
    }

    void _Step(std::size_t index) {
        const std::string_view text = _text.GetText(_tokens[index].range);
        const bool isFirstOnLine =
            index == 0 || _text.GetPlace(_tokens[index - 1].range.end).line <
                              _text.GetPlace(_tokens[index].range.begin).line;
        const std::size_t next = _reader.Next(index);
        const std::string_view nextText =
            next < _tokens.size() ? _text.GetText(_tokens[next].range) : std::string_view();
        _nesting.Step(index, text, nextText, isFirstOnLine);
        if (text == "{") {
            _OpenBody(_tokens[index].range.begin);
        }
        _CloseWhatEnded(_tokens[index].range.end, false);
        _previous = index;
    }

    /// The braces of the container or the function begin.
    void _OpenBody(std::size_t begin) {
        const std::uint32_t depth = _nesting.GetDepth();
        if (_hasFunction && depth == _functionDepth) {
            _isFunctionOpen = true;
            _GetFunction().bodyRange.begin = begin;
        } else if (_hasContainer && !_hasFunction && depth == kContainerDepth) {
            _isContainerOpen = true;
            _outline.symbols.back().bodyRange.begin = begin;
        }
    }

    /// @param isCut whether there was no brace to end it
    void _CloseWhatEnded(std::size_t end, bool isCut) {
        const std::uint32_t depth = _nesting.GetDepth();
        while (!_locals.empty() && depth < _locals.back().depth) {
            _CloseLocal(end);
        }
        if (_isFunctionOpen && depth < _functionDepth) {
            _CloseFunction(end, isCut);
        }
        if (_isContainerOpen && depth < kContainerDepth) {
            _CloseContainer(end, isCut);
        }
    }

    void _CloseLocal(std::size_t end) {
        _GetFunction().children[_locals.back().child].bodyRange.end = end;
        _locals.pop_back();
    }

    /// @param isCut whether the closing brace is missing; @p end is then where something else
    /// begins
    void _CloseFunction(std::size_t end, bool isCut) {
        if (!_hasFunction) {
            return;
        }
        while (!_locals.empty()) {
            _CloseLocal(end);
        }
        Symbol& function = _GetFunction();
        _CloseSymbol(function, end, _isFunctionOpen, isCut);
        for (Symbol& child : function.children) {
            if (child.kind == Symbol::kKind_Parameter) {
                child.bodyRange = {child.range.begin, end};
            }
        }
        _hasFunction = false;
        _isFunctionOpen = false;
    }

    void _CloseContainer(std::size_t end, bool isCut) {
        _CloseFunction(end, isCut);
        if (_hasContainer) {
            _CloseSymbol(_outline.symbols.back(), end, _isContainerOpen, isCut);
        }
        _hasContainer = false;
        _isContainerOpen = false;
    }

    static void _CloseSymbol(Symbol& symbol, std::size_t end, bool hasBody, bool isCut) {
        if (hasBody) {
            symbol.bodyRange.end = end;
            symbol.range.end = end;
            symbol.isCut = isCut;
        }
    }

    Symbol& _GetFunction() {
        return _hasContainer ? _outline.symbols.back().children.back() : _outline.symbols.back();
    }

    const SourceText& _text;
    const std::vector<SourceToken>& _tokens;
    CommentText _comments;
    DeclarationReader _reader;
    Nesting _nesting;
    Outline _outline;
    std::vector<Symbol> _defines; ///< apart, as they may stand within others

    std::size_t _previous = 0;       ///< the token stepped over last
    std::size_t _declarationEnd = 0; ///< tokens before it have been read
    bool _hasContainer = false;      ///< the last of the symbols
    bool _isContainerOpen = false;   ///< its brace has come
    bool _hasFunction = false;       ///< the last of the container, or of the symbols
    bool _isFunctionOpen = false;
    std::uint32_t _functionDepth = 0; ///< inside of its braces
    std::vector<OpenLocal> _locals;
};

} // namespace

const Symbol* Symbol::FindChild(const std::string& childName) const {
    const auto found =
        std::find_if(children.begin(), children.end(),
                     [&childName](const Symbol& child) { return child.name == childName; });
    return found == children.end() ? nullptr : &*found;
}

std::vector<const Symbol*> Outline::FindAround(std::size_t offset) const {
    std::vector<const Symbol*> around;
    const std::vector<Symbol>* siblings = &symbols;
    while (siblings != nullptr) {
        const std::vector<Symbol>* inner = nullptr;
        for (const Symbol& symbol : *siblings) {
            const bool isAround =
                symbol.range.Contains(offset) || (symbol.isCut && symbol.range.end == offset);
            if (isAround && (symbol.IsContainer() || symbol.IsFunction())) {
                around.push_back(&symbol);
                inner = symbol.IsContainer() ? &symbol.children : nullptr;
                break;
            }
        }
        siblings = inner;
    }
    return around;
}

const Symbol* Outline::Find(const std::string& name) const {
    const auto found = std::find_if(symbols.begin(), symbols.end(),
                                    [&](const Symbol& symbol) { return symbol.name == name; });
    return found == symbols.end() ? nullptr : &*found;
}

Outline MakeOutline(const SourceText& text, const std::vector<SourceToken>& tokens) {
    return OutlineBuilder(text, tokens).Run();
}

} // namespace Tolen::Language
