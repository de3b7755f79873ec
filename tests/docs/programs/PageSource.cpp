// Writes a source with all C++ that a document shows, for the compiler to try.
//
// usage: page-source FRAME PAGE > SOURCE
//
// FRAME is the program that the page's blocks stand in: a source, or a document that shows it in a
// block marked "frame". PAGE is a document. Both are relative to the source folder. Marks of the
// page's blocks say where they go:
//
// | mark       | the block                                                                      |
// |------------|--------------------------------------------------------------------------------|
// | none       | is run behind those above it, in one function                                  |
// | file-scope | stands ahead of the function                                                   |
// | include    | stands at the top, with the frame's own includes                               |
// | new        | begins a new program, in a fresh frame; a second mark says where it stands     |
// | frame      | is the frame                                                                   |
//
// KLSL marked "file=NAME" is saved under that name, where it stands among the statements.
//
// Compilers name the document's lines in their messages.

#include "docs/Markdown.h"

#include "support/paths/SourceFolder.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <sstream>

namespace Tolen::Tests {
namespace {

constexpr const char* kScope = "// The functions and classes of a page stand here.";
constexpr const char* kBody = "// The statements of a page stand here.";
constexpr const char* kMain = "int main()";

struct Frame {
    std::string document;
    int line = 1; ///< of its first line in the document
    std::vector<std::string> lines;
    std::size_t countIncludes = 0; ///< the lines up to the last #include
};

struct Program {
    std::vector<CodeBlock> scope;
    std::vector<CodeBlock> body;
};

Frame _ReadFrame(const std::string& document) {
    Frame frame;
    frame.document = document;
    std::string text = ReadText(SourceFolder() + "/" + document);
    if (std::filesystem::path(document).extension() == ".md") {
        text.clear();
        for (const CodeBlock& block : ReadCodeBlocks(document)) {
            if (block.HasMark("frame")) {
                text = block.text;
                frame.line = block.line + 1;
            }
        }
    }
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        frame.lines.push_back(line);
        if (line.rfind("#include", 0) == 0) {
            frame.countIncludes = frame.lines.size();
        }
    }
    return frame;
}

void _WriteLine(int line, const std::string& document) {
    std::cout << "#line " << line << " \"" << document << "\"\n";
}

void _WriteBlock(const CodeBlock& block) {
    _WriteLine(block.line + 1, block.document);
    std::cout << block.text;
}

void _WriteStatements(const CodeBlock& block) {
    if (block.language == "klsl") {
        std::cout << "Tolen::Tests::SaveFile(\"" << block.GetMark("file") << "\", R\"klsl("
                  << block.text << ")klsl\");\n";
    } else {
        _WriteBlock(block);
        std::cout << "Tolen::Tests::EndOfBlock(" << block.line << ");\n";
    }
}

/// The frame from its line @p first on, with the program's blocks in it.
void _WriteProgram(const Frame& frame, std::size_t first, const Program& program) {
    const auto goOn = [&](std::size_t i) {
        _WriteLine(frame.line + static_cast<int>(i), frame.document);
    };
    goOn(first);
    for (std::size_t i = first; i < frame.lines.size(); ++i) {
        std::string line = frame.lines[i];
        const std::size_t blanks = line.find_first_not_of(' ');
        const std::string code = blanks == std::string::npos ? "" : line.substr(blanks);
        if (code == kScope) {
            for (const CodeBlock& block : program.scope) {
                _WriteBlock(block);
            }
            goOn(i + 1);
        } else if (code == kBody) {
            for (const CodeBlock& block : program.body) {
                _WriteStatements(block);
            }
            goOn(i + 1);
        } else {
            const std::size_t main = line.find(kMain);
            if (main != std::string::npos) {
                line.replace(main, std::string(kMain).size(), "void Run()");
            }
            std::cout << line << "\n";
        }
    }
}

void _WritePage(const Frame& frame, const std::string& page) {
    std::vector<CodeBlock> includes;
    std::vector<Program> programs(1);
    for (const CodeBlock& block : ReadCodeBlocks(page)) {
        const bool isFile = block.language == "klsl" && !block.GetMark("file").empty();
        if ((block.language != "cpp" && !isFile) || block.HasMark("frame")) {
            continue;
        }
        if (block.HasMark("include")) {
            includes.push_back(block);
            continue;
        }
        if (block.HasMark("new")) {
            programs.emplace_back();
        }
        Program& program = programs.back();
        (block.HasMark("file-scope") ? program.scope : program.body).push_back(block);
    }

    std::cout << "#include \"docs/programs/Page.h\"\n";
    _WriteLine(frame.line, frame.document);
    for (std::size_t i = 0; i < frame.countIncludes; ++i) {
        std::cout << frame.lines[i] << "\n";
    }
    for (const CodeBlock& block : includes) {
        _WriteBlock(block);
    }
    const std::string name = std::filesystem::path(page).stem().string();
    std::string list;
    for (std::size_t i = 0; i < programs.size(); ++i) {
        if (programs[i].scope.empty() && programs[i].body.empty()) {
            continue; // the page begins with a block marked "new"
        }
        // A namespace for each, since pages may use the same names.
        std::string space = "page_" + name + "_" + std::to_string(i);
        std::replace(space.begin(), space.end(), '-', '_');
        std::cout << "namespace " << space << " {\n";
        _WriteProgram(frame, frame.countIncludes, programs[i]);
        std::cout << "} // namespace " << space << "\n";
        list += (list.empty() ? "" : ", ") + ("&" + space + "::Run");
    }
    std::cout << "static const Tolen::Tests::Page kPage(\"" << name << "\", {" << list << "});\n";
}

} // namespace
} // namespace Tolen::Tests

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: page-source FRAME PAGE\n";
        return 1;
    }
    Tolen::Tests::_WritePage(Tolen::Tests::_ReadFrame(arguments[1]), arguments[2]);
}
