#include "language/Reference.h"

#include "language/HeadComment.h"
#include "language/MarkdownPage.h"
#include "language/Outline.h"
#include "language/ParameterTable.h"
#include "language/SourceToken.h"
#include "language/Spacing.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <utility>

namespace Tolen::Language {

namespace {


using Rows = std::vector<std::vector<std::string>>;

struct Library {
    explicit Library(const ReferenceSource& source)
        : name(source.name), text(source.text), outline(MakeOutline(text, Tokenize(source.text))) {
        std::vector<std::string> classNames;
        for (const Symbol& symbol : outline.symbols) {
            if (symbol.kind == Symbol::kKind_Class) {
                classNames.push_back(symbol.name);
            }
        }
        head = ReadHeadComment(outline.headComment, classNames);
    }

    std::string name;
    SourceText text;
    Outline outline;
    std::vector<HeadBlock> head;
};

std::string JoinLines(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

/// A value of the source on one line.
std::string TidyValue(const std::string& value) {
    const SourceText text(value);
    const std::vector<SourceToken> tokens = Tokenize(value);
    return JoinTokens(text, tokens.data(), tokens.data() + tokens.size());
}

/// A sentence that goes on behind a name becomes one of its own.
std::string WithCapital(std::string text) {
    if (!text.empty()) {
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    }
    return text;
}

class ReferenceWriter {
public:
    ReferenceWriter(const std::vector<ReferenceSource>& sources, std::string title)
        : _title(std::move(title)) {
        for (const ReferenceSource& source : sources) {
            _libraries.push_back(std::make_unique<Library>(source));
        }
    }

    Reference Run() {
        _Announce();
        _page.AddHeading(1, _title);
        _page.AddBlock("What these libraries declare, with their comments; made by `klsl doc`.");
        _AddContents();
        for (const auto& library : _libraries) {
            _AddLibrary(*library);
        }
        _reference.page = _page.GetText();
        return std::move(_reference);
    }

private:
    /// In the order in which _AddLibrary writes.
    void _Announce() {
        _page.Announce(_title, _title);
        for (const auto& library : _libraries) {
            _page.Announce(library->name, library->name);
            for (const Symbol& symbol : library->outline.symbols) {
                if (symbol.IsContainer()) {
                    _page.Announce(symbol.name, symbol.name);
                }
            }
            if (_HasFunctions(*library)) {
                _page.Announce(_GetFunctionsHeading(*library), library->name + "()");
            }
        }
    }

    static std::string _GetFunctionsHeading(const Library& library) {
        return "Functions of " + library.name;
    }

    static bool _HasFunctions(const Library& library) {
        return std::any_of(
            library.outline.symbols.begin(), library.outline.symbols.end(),
            [](const Symbol& symbol) { return symbol.kind == Symbol::kKind_Function; });
    }

    void _AddContents() {
        std::string contents;
        for (const auto& library : _libraries) {
            std::string names;
            for (const Symbol& symbol : library->outline.symbols) {
                if (symbol.IsContainer()) {
                    names += (names.empty() ? ": " : ", ") + _page.Link(symbol.name);
                }
            }
            if (_HasFunctions(*library)) {
                names +=
                    (names.empty() ? ": " : ", ") + _page.Link(library->name + "()", "functions");
            }
            contents += (contents.empty() ? "* " : "\n* ") + _page.Link(library->name) + names;
        }
        _page.AddBlock(contents);
    }

    void _AddLibrary(const Library& library) {
        const ParameterTable parameters(library.outline, library.head);
        const std::vector<Diagnostic> differences = parameters.Compare(library.name, library.text);
        _reference.differences.insert(_reference.differences.end(), differences.begin(),
                                      differences.end());
        _page.AddHeading(2, library.name);
        for (std::size_t i = 0; i < library.head.size(); ++i) {
            // What is told of single classes and inputs stands there, and captions with their
            // table.
            const HeadBlock& block = library.head[i];
            const HeadBlock& table = block.isCaption ? library.head[i + 1] : block;
            if (block.className.empty() || block.IsTable()) {
                if (!table.IsTable() || !parameters.IsAboutInputs(table)) {
                    _AddHeadBlock(block);
                }
            }
        }
        _AddDefinitions(library);
        for (const Symbol& symbol : library.outline.symbols) {
            if (symbol.kind == Symbol::kKind_Interface) {
                _AddInterface(symbol);
            } else if (symbol.kind == Symbol::kKind_Class) {
                _AddClass(library, symbol, parameters);
            }
        }
        if (_HasFunctions(library)) {
            _page.AddHeading(3, _GetFunctionsHeading(library));
            _AddFunctions(library.outline.symbols, Symbol::kKind_Function, nullptr);
        }
    }

    void _AddHeadBlock(const HeadBlock& block) {
        if (!block.IsTable()) {
            _page.AddBlock(MarkdownPage::Escape(block.paragraph));
            return;
        }
        Rows rows;
        for (const HeadBlock::Row& row : block.rows) {
            std::vector<std::string> cells;
            for (const std::string& cell : row.cells) {
                cells.push_back(_LinkList(cell));
            }
            rows.push_back(std::move(cells));
        }
        std::vector<std::string> header = block.header;
        if (header.empty() && !block.rows.empty()) {
            header.resize(block.rows.front().cells.size());
        }
        _page.AddTable(header, rows);
    }

    /// A list of names with links, or else what the text is.
    std::string _LinkList(const std::string& text) const {
        std::string linked;
        for (const std::string& name : SplitList(text)) {
            const std::string link = _page.Link(name);
            if (link == name) {
                return MarkdownPage::Escape(text);
            }
            linked += (linked.empty() ? "" : ", ") + link;
        }
        return linked;
    }

    void _AddDefinitions(const Library& library) {
        Rows rows;
        for (const Symbol& symbol : library.outline.symbols) {
            if (symbol.kind == Symbol::kKind_Define) {
                rows.push_back({MarkdownPage::Code(symbol.name),
                                symbol.value.empty() ? "" : MarkdownPage::Code(symbol.value),
                                _Describe(symbol)});
            }
        }
        if (!rows.empty()) {
            _page.AddTable({"definition", "value", "meaning"}, rows);
        }
    }

    static std::string _Describe(const Symbol& symbol) {
        return MarkdownPage::Escape(JoinLines(symbol.comment));
    }

    void _AddInterface(const Symbol& interface) {
        _page.AddHeading(3, interface.name);
        const std::string implementations = _ListImplementations(interface.name);
        _page.AddBlock("An interface, implemented by " +
                       (implementations.empty() ? "no class here" : implementations) + ".");
        _page.AddBlock(_Describe(interface));
        _AddFunctions(interface.children, Symbol::kKind_Method, nullptr);
    }

    std::string _ListImplementations(const std::string& interface) const {
        std::string list;
        for (const auto& library : _libraries) {
            for (const Symbol& symbol : library->outline.symbols) {
                if (symbol.kind == Symbol::kKind_Class && symbol.type == interface) {
                    list += (list.empty() ? "" : ", ") + _page.Link(symbol.name);
                }
            }
        }
        return list;
    }

    void _AddClass(const Library& library, const Symbol& symbol, const ParameterTable& parameters) {
        _page.AddHeading(3, symbol.name);
        std::string kind = "A class";
        kind += symbol.type.empty() ? "" : ", implements " + _page.Link(symbol.type);
        _page.AddBlock(kind + _DescribeRoot(symbol) + ".");
        for (const HeadBlock& block : library.head) {
            if (!block.IsTable() && block.className == symbol.name) {
                _page.AddBlock(MarkdownPage::Escape(WithCapital(block.paragraph)));
            }
        }
        _page.AddBlock(_Describe(symbol));
        _AddInputs(symbol, parameters);
        _AddCoords(symbol, parameters);
        _AddOutputs(symbol);
        _AddFunctions(symbol.children, Symbol::kKind_Method, _FindInterface(symbol.type));
    }

    /// What effects it can be the root of, by the methods that these call.
    static std::string _DescribeRoot(const Symbol& symbol) {
        const auto has = [&](const char* signature) {
            return std::any_of(
                symbol.children.begin(), symbol.children.end(), [&](const Symbol& child) {
                    return child.kind == Symbol::kKind_Method && child.signature == signature;
                });
        };
        const bool renders = has("void Render()") || has("void Render(void)");
        const bool shades = has("void Shade()") || has("void Shade(void)");
        return renders && shades ? "; can be the root of every effect"
               : renders         ? "; can be the root of a renderer"
               : shades          ? "; can be the root of a surface or a prefix"
                                 : "";
    }

    void _AddInputs(const Symbol& symbol, const ParameterTable& parameters) {
        Rows rows;
        for (const Symbol& child : symbol.children) {
            if (child.kind == Symbol::kKind_Input) {
                rows.push_back(
                    {MarkdownPage::Code(child.name) + (child.isStatic ? ", of the class" : ""),
                     _LinkType(child), _GetMeaning(symbol, child, parameters),
                     _LinkDefault(child)});
            }
        }
        if (!rows.empty()) {
            _page.AddTable({"input", "type", "unit, range", "default"}, rows);
        }
    }

    static std::string _GetMeaning(const Symbol& owner, const Symbol& value,
                                   const ParameterTable& parameters) {
        const std::string told = parameters.FindMeaning(owner, value);
        const std::string comment = JoinLines(value.comment);
        const char* const between = told.empty() || comment.empty() ? "" : "; ";
        return MarkdownPage::Escape(told + between + comment);
    }

    std::string _LinkType(const Symbol& value) const {
        return _page.Link(value.type, MarkdownPage::Code(value.type + value.brackets));
    }

    std::string _LinkDefault(const Symbol& value) const {
        const std::string tidy = TidyValue(value.value);
        const std::string name = tidy.substr(0, tidy.find('('));
        return tidy.empty()          ? std::string()
               : tidy == name + "()" ? _page.Link(name, MarkdownPage::Code(name))
                                     : MarkdownPage::Code(tidy);
    }

    void _AddCoords(const Symbol& symbol, const ParameterTable& parameters) {
        Rows rows;
        for (const Symbol& child : symbol.children) {
            if (child.kind == Symbol::kKind_Coord) {
                const std::string word = child.signature.substr(0, child.signature.find(' '));
                rows.push_back({MarkdownPage::Code(child.name),
                                MarkdownPage::Code(word + " " + child.type),
                                _GetMeaning(symbol, child, parameters)});
            }
        }
        if (!rows.empty()) {
            _page.AddTable({"coord", "type", "meaning"}, rows);
        }
    }

    void _AddOutputs(const Symbol& symbol) {
        Rows rows;
        for (const Symbol& child : symbol.children) {
            if (child.kind == Symbol::kKind_Output) {
                rows.push_back({MarkdownPage::Code(child.name), MarkdownPage::Code(child.type),
                                _Describe(child)});
            }
        }
        if (!rows.empty()) {
            _page.AddTable({"output", "type", "meaning"}, rows);
        }
    }

    /// @return null when it is not on the page
    const Symbol* _FindInterface(const std::string& name) const {
        for (const auto& library : _libraries) {
            const Symbol* const symbol = library->outline.Find(name);
            if (symbol != nullptr && symbol->kind == Symbol::kKind_Interface) {
                return symbol;
            }
        }
        return nullptr;
    }

    /// @param known an interface whose methods are left out if nothing more is to be said
    void _AddFunctions(const std::vector<Symbol>& symbols, Symbol::Kind kind, const Symbol* known) {
        std::string list;
        for (const Symbol& symbol : symbols) {
            if (symbol.kind != kind || (symbol.comment.empty() && _Declares(known, symbol))) {
                continue;
            }
            const std::string comment = _Describe(symbol);
            list += (list.empty() ? "* " : "\n* ") + MarkdownPage::Code(symbol.signature) +
                    (comment.empty() ? "" : ": ") + comment;
        }
        _page.AddBlock(list);
    }

    static bool _Declares(const Symbol* interface, const Symbol& method) {
        return interface != nullptr &&
               std::any_of(
                   interface->children.begin(), interface->children.end(),
                   [&](const Symbol& child) { return child.signature == method.signature; });
    }

    std::string _title;
    std::vector<std::unique_ptr<Library>> _libraries; ///< outlines and heads refer to them
    MarkdownPage _page;
    Reference _reference;
};

} // namespace

Reference MakeReference(const std::vector<ReferenceSource>& sources, const std::string& title) {
    return ReferenceWriter(sources, title).Run();
}

} // namespace Tolen::Language
