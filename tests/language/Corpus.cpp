#include "language/Corpus.h"

#include "docs/Markdown.h"
#include "support/paths/SourceFolder.h"

#include <algorithm>
#include <filesystem>

namespace Tolen::Tests {

namespace {

std::vector<CorpusText> ReadCorpus() {
    std::vector<CorpusText> corpus;
    for (const char* folder : {"/shaders", "/examples"}) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(SourceFolder() + folder)) {
            if (entry.path().extension() == ".klsl") {
                corpus.push_back({entry.path(), ReadText(entry.path())});
            }
        }
    }
    std::sort(corpus.begin(), corpus.end(),
              [](const CorpusText& a, const CorpusText& b) { return a.name < b.name; });
    for (const std::string& document : ListDocuments()) {
        for (const CodeBlock& block : ReadCodeBlocks(document)) {
            if (block.language == "klsl") {
                corpus.push_back({block.GetPlace(), block.text});
            }
        }
    }
    return corpus;
}

std::size_t Below(std::mt19937& random, std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

} // namespace

const std::vector<CorpusText>& GetCorpus() {
    static const std::vector<CorpusText> kCorpus = ReadCorpus();
    return kCorpus;
}

std::string MakeRandomText(std::mt19937& random, int pieces) {
    static const std::vector<std::string> kPieces = {"a",
                                                     "bc",
                                                     "Class9",
                                                     "_",
                                                     "class",
                                                     "interface",
                                                     "input",
                                                     "static",
                                                     "const",
                                                     "coord",
                                                     "normal",
                                                     "output",
                                                     "out",
                                                     "float",
                                                     "vec3",
                                                     "mat4",
                                                     "void",
                                                     "primitive",
                                                     "if",
                                                     "else",
                                                     "for",
                                                     "while",
                                                     "do",
                                                     "return",
                                                     "break",
                                                     "true",
                                                     "struct",
                                                     "in",
                                                     "inout",
                                                     "1",
                                                     "0x1F",
                                                     "08",
                                                     "1.5",
                                                     ".5",
                                                     "1.",
                                                     "1e3",
                                                     "2f",
                                                     "1.5e-2f",
                                                     "e",
                                                     "+",
                                                     "-",
                                                     "*",
                                                     "/",
                                                     "%",
                                                     "=",
                                                     "<",
                                                     ">",
                                                     "!",
                                                     "~",
                                                     "&",
                                                     "|",
                                                     "^",
                                                     "++",
                                                     "--",
                                                     "==",
                                                     "<<",
                                                     ">>=",
                                                     "&&",
                                                     "^^",
                                                     "||",
                                                     "?",
                                                     ":",
                                                     ".",
                                                     ",",
                                                     ";",
                                                     ";",
                                                     ";",
                                                     "(",
                                                     ")",
                                                     "(",
                                                     ")",
                                                     "[",
                                                     "]",
                                                     "{",
                                                     "}",
                                                     "{",
                                                     "}",
                                                     " ",
                                                     " ",
                                                     " ",
                                                     "  ",
                                                     "\t",
                                                     "\n",
                                                     "\n",
                                                     "\n",
                                                     "\n\n\n",
                                                     "\r\n",
                                                     "\f",
                                                     "// c\n",
                                                     "//\n",
                                                     "///// d /* e\n",
                                                     "/* f */",
                                                     "/**/",
                                                     "/* g\n   h */",
                                                     "/*\n#define i */\n*/",
                                                     "/* j",
                                                     "\n#define K 1\n",
                                                     "\n#undef K\n",
                                                     "\n  #ifdef K\n",
                                                     "\n#ifndef L\n",
                                                     "\n#else\n",
                                                     "\n#endif\n",
                                                     "\n#include \"m.klsl\"\n",
                                                     "\n#import \"n\n",
                                                     "\n#define\n",
                                                     "\n# define O\n",
                                                     "#define P",
                                                     "$",
                                                     "\"q\"",
                                                     "\\",
                                                     "@",
                                                     "\xc3\xa4",
                                                     "\xff",
                                                     "#"};
    std::string text;
    for (int i = 0; i < pieces; ++i) {
        text += kPieces[Below(random, kPieces.size())];
        text += Below(random, 3) == 0 ? " " : "";
    }
    return text;
}

std::string Damage(std::mt19937& random, std::string text) {
    for (std::size_t count = 1 + Below(random, 6); count > 0 && !text.empty(); --count) {
        const std::size_t begin = Below(random, text.size());
        const std::size_t length = 1 + Below(random, Below(random, 4) == 0 ? 400 : 8);
        const std::string piece = text.substr(begin, length);
        if (Below(random, 4) != 0) {
            text.erase(begin, length);
        }
        if (Below(random, 3) == 0) {
            text.insert(Below(random, text.size() + 1), piece);
        }
    }
    return text;
}

} // namespace Tolen::Tests
