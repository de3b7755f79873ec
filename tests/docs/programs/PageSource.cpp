// Takes the C++ that a document shows out of it, for the compiler to try.
//
// usage: page-source FRAME PAGE > SOURCE
//        page-source --project PAGE FOLDER
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
// | frame      | is the frame                                                                   |
//
// KLSL marked "file=NAME" is saved under that name, where it stands among the statements. Compilers
// name the document's lines in their messages.
//
// The second form writes what a reader has who follows a page that shows its frame: its CMake code,
// its files, and the program itself.

#include "docs/Markdown.h"

#include "support/paths/SourceFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
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

struct PageBlocks {
    std::vector<CodeBlock> includes;
    std::vector<CodeBlock> scope;
    std::vector<CodeBlock> body;
};

bool _IsFile(const CodeBlock& block) {
    return block.language == "klsl" && !block.GetMark("file").empty();
}

Frame _ReadFrame(const std::string& document) {
    Frame frame;
    frame.document = document;
    std::string text;
    if (std::filesystem::path(document).extension() == ".md") {
        for (const CodeBlock& block : ReadCodeBlocks(document)) {
            if (block.HasMark("frame")) {
                text = block.text;
                frame.line = block.line + 1;
            }
        }
    } else {
        text = ReadText(SourceFolder() + "/" + document);
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

PageBlocks _ReadPage(const std::string& page) {
    PageBlocks blocks;
    for (const CodeBlock& block : ReadCodeBlocks(page)) {
        if ((block.language != "cpp" && !_IsFile(block)) || block.HasMark("frame")) {
            continue;
        }
        if (block.HasMark("include")) {
            blocks.includes.push_back(block);
        } else {
            (block.HasMark("file-scope") ? blocks.scope : blocks.body).push_back(block);
        }
    }
    return blocks;
}

/// How blocks get into a frame: as a program of its own, or for Page.h.
class PageWriter {
public:
    explicit PageWriter(std::ostream& stream) : _stream(stream) {}
    virtual ~PageWriter() = default;
    PageWriter(const PageWriter&) = delete;
    PageWriter& operator=(const PageWriter&) = delete;

    void WriteIncludes(const Frame& frame, const PageBlocks& blocks) {
        _WriteLine(frame.line, frame.document);
        for (std::size_t i = 0; i < frame.countIncludes; ++i) {
            _stream << frame.lines[i] << "\n";
        }
        for (const CodeBlock& block : blocks.includes) {
            _WriteBlock(block);
        }
    }

    void WriteProgram(const Frame& frame, const PageBlocks& blocks) {
        _GoOn(frame, frame.countIncludes);
        for (std::size_t i = frame.countIncludes; i < frame.lines.size(); ++i) {
            const std::string& line = frame.lines[i];
            const std::size_t blanks = line.find_first_not_of(' ');
            const std::string code = blanks == std::string::npos ? "" : line.substr(blanks);
            if (code == kScope) {
                for (const CodeBlock& block : blocks.scope) {
                    _WriteBlock(block);
                }
                _GoOn(frame, i + 1);
            } else if (code == kBody) {
                for (const CodeBlock& block : blocks.body) {
                    _WriteStatements(block);
                }
                _GoOn(frame, i + 1);
            } else {
                _WriteFrameLine(line);
            }
        }
    }

protected:
    virtual void _WriteLine(int, const std::string&) {}
    virtual void _WriteFrameLine(const std::string& line) { _stream << line << "\n"; }
    virtual void _WriteStatements(const CodeBlock& block) {
        if (!_IsFile(block)) {
            _WriteBlock(block);
        }
    }

    void _WriteBlock(const CodeBlock& block) {
        _WriteLine(block.line + 1, block.document);
        _stream << block.text;
    }

    std::ostream& _stream;

private:
    void _GoOn(const Frame& frame, std::size_t i) {
        _WriteLine(frame.line + static_cast<int>(i), frame.document);
    }
};

class TestedPageWriter final : public PageWriter {
public:
    using PageWriter::PageWriter;

    void Write(const Frame& frame, const std::string& page) {
        const PageBlocks blocks = _ReadPage(page);
        const std::string name = std::filesystem::path(page).stem().string();
        // A namespace for each, since pages may use the same names.
        std::string space = "page_" + name;
        std::replace(space.begin(), space.end(), '-', '_');
        _stream << "#include \"docs/programs/Page.h\"\n";
        WriteIncludes(frame, blocks);
        _stream << "namespace " << space << " {\n";
        WriteProgram(frame, blocks);
        _stream << "} // namespace " << space << "\n"
                << "static const Tolen::Tests::Page kPage(\"" << name << "\", &" << space
                << "::Run);\n";
    }

private:
    void _WriteLine(int line, const std::string& document) override {
        _stream << "#line " << line << " \"" << document << "\"\n";
    }

    void _WriteFrameLine(const std::string& line) override {
        std::string written = line;
        const std::size_t main = line.find(kMain);
        if (main != std::string::npos) {
            written.replace(main, std::string(kMain).size(), "void Run()");
        }
        _stream << written << "\n";
    }

    void _WriteStatements(const CodeBlock& block) override {
        if (_IsFile(block)) {
            _stream << "Tolen::Tests::SaveFile(\"" << block.GetMark("file") << "\", R\"klsl("
                    << block.text << ")klsl\");\n";
        } else {
            _WriteBlock(block);
            _stream << "Tolen::Tests::EndOfBlock(" << block.line << ");\n";
        }
    }
};

void _WriteProject(const std::string& page, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::ofstream build(folder / "CMakeLists.txt");
    for (const CodeBlock& block : ReadCodeBlocks(page)) {
        if (block.language == "cmake") {
            build << block.text;
        } else if (_IsFile(block)) {
            std::ofstream(folder / block.GetMark("file")) << block.text;
        }
    }
    std::ofstream stream(folder / "renderer.cpp");
    PageWriter writer(stream);
    const Frame frame = _ReadFrame(page);
    const PageBlocks blocks = _ReadPage(page);
    writer.WriteIncludes(frame, blocks);
    writer.WriteProgram(frame, blocks);
}

} // namespace
} // namespace Tolen::Tests

int main(int count, char** arguments) {
    if (count == 4 && std::string(arguments[1]) == "--project") {
        Tolen::Tests::_WriteProject(arguments[2], arguments[3]);
    } else if (count == 3) {
        Tolen::Tests::TestedPageWriter(std::cout).Write(Tolen::Tests::_ReadFrame(arguments[1]),
                                                        arguments[2]);
    } else {
        std::cerr << "usage: page-source FRAME PAGE | page-source --project PAGE FOLDER\n";
        return 1;
    }
}
