#include "language-server/LanguageClient.h"

#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

/// Documents that somebody tears apart, with requests in between: each is answered, and what is
/// answered lies in the document. TOLEN_RANDOM_EDITS in the environment is how many edits each
/// document gets; --gtest_shuffle with --gtest_random_seed makes other ones.

namespace Tolen::Tests {
namespace {

constexpr const char* kMethods[] = {
    "textDocument/definition",    "textDocument/implementation", "textDocument/hover",
    "textDocument/completion",    "textDocument/signatureHelp",  "textDocument/documentSymbol",
    "textDocument/formatting",    "textDocument/references",     "textDocument/documentHighlight",
    "textDocument/prepareRename",
};

constexpr const char* kPieces[] = {
    "{",         "}",
    "(",         ")",
    "[",         "]",
    ".",         ";",
    ",",         "\n",
    "\r\n",      " ",
    "/*",        "*/",
    "//",        "\"",
    "$",         "=",
    "class",     "class A",
    ": I",       "input ",
    "interface", "#",
    "vec3",      "float",
    "static ",   "x",
    "#define ",  "#include \"",
    "0.5",       "A.F(",
    "\xc3\xa4",  "\xf0\x9f\x98\x80",
    "\xff",      "\t",
};

int CountEdits() {
    const char* const count = std::getenv("TOLEN_RANDOM_EDITS");
    return count == nullptr ? 40 : std::atoi(count);
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The document as the client has it: bytes, with positions in UTF-8.
class Editor {
public:
    Editor(LanguageClient& client, std::string uri, std::string text)
        : _client(client), _uri(std::move(uri)), _text(std::move(text)) {
        // Clients send UTF-8; other bytes come from pieces of letters.
        _client.Open(_uri, _text);
    }

    void Edit(std::mt19937& random) {
        const std::size_t begin = PickBoundary(random);
        std::size_t end = std::min(begin + random() % (random() % 20 == 0 ? 400 : 8), _text.size());
        while (end < _text.size() && IsInside(end)) {
            ++end;
        }
        std::string inserted;
        for (auto count = random() % 4; count > 0; --count) {
            inserted += kPieces[random() % std::size(kPieces)];
        }
        inserted.erase(std::remove(inserted.begin(), inserted.end(), '\xff'), inserted.end());
        const Json range = {{"start", PositionOf(begin)}, {"end", PositionOf(end)}};
        _text.replace(begin, end - begin, inserted);
        _client.Notify("textDocument/didChange",
                       {{"textDocument", {{"uri", _uri}, {"version", ++_version}}},
                        {"contentChanges", {{{"range", range}, {"text", inserted}}}}});
    }

    void Ask(std::mt19937& random) {
        const std::string method = kMethods[random() % std::size(kMethods)];
        const Json answer = _client.Ask(method, {{"textDocument", {{"uri", _uri}}},
                                                 {"position", PositionOf(PickBoundary(random))},
                                                 {"context", {{"includeDeclaration", true}}}});
        ASSERT_TRUE(answer.contains("result")) << method << answer;
        CheckRanges(answer["result"], method, true);
    }

private:
    bool IsInside(std::size_t at) const {
        return (static_cast<unsigned char>(_text[at]) & 0xc0) == 0x80 ||
               (_text[at] == '\n' && at > 0 && _text[at - 1] == '\r');
    }

    std::size_t PickBoundary(std::mt19937& random) const {
        std::size_t at = random() % (_text.size() + 1);
        while (at < _text.size() && IsInside(at)) {
            ++at;
        }
        return at;
    }

    Json PositionOf(std::size_t offset) const {
        const auto line =
            std::count(_text.begin(), _text.begin() + static_cast<std::ptrdiff_t>(offset), '\n');
        const std::size_t begin = offset == 0 ? 0 : _text.rfind('\n', offset - 1) + 1;
        return {{"line", line}, {"character", offset - begin}};
    }

    /// Places in other documents are not looked at.
    void CheckRanges(const Json& value, const std::string& method, bool isOwn) const {
        if (value.is_object()) {
            const bool isOfThis = isOwn && (!value.contains("uri") || value["uri"] == _uri);
            if (isOfThis && value.contains("start") && value.contains("end")) {
                CheckPlace(value["start"], method);
                CheckPlace(value["end"], method);
                EXPECT_LE(OffsetOf(value["start"]), OffsetOf(value["end"])) << method << value;
            }
            for (const Json& member : value) {
                CheckRanges(member, method, isOfThis);
            }
        } else if (value.is_array()) {
            for (const Json& item : value) {
                CheckRanges(item, method, isOwn);
            }
        }
    }

    std::size_t OffsetOf(const Json& position) const {
        std::size_t begin = 0;
        for (int line = position["line"]; line > 0; --line) {
            begin = std::min(_text.find('\n', begin), _text.size() - 1) + 1;
        }
        return begin + position["character"].get<std::size_t>();
    }

    void CheckPlace(const Json& position, const std::string& method) const {
        const std::size_t offset = OffsetOf(position);
        ASSERT_LE(offset, _text.size()) << method << position;
        EXPECT_EQ(PositionOf(offset), position) << method;
    }

    LanguageClient& _client;
    std::string _uri;
    std::string _text;
    int _version = 1;
};

TEST(RandomEdits, AreAnsweredWithPlacesInTheDocument) {
    const std::string folder = SourceFolder() + "/shaders";
    LanguageClient client;
    client.Initialize(
        {{"general", {{"positionEncodings", {"utf-8"}}}},
         {"textDocument", {{"documentSymbol", {{"hierarchicalDocumentSymbolSupport", true}}}}}},
        folder);
    std::mt19937 random(17 +
                        static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    for (const std::string file : {"patterns.klsl", "interfaces.klsl", "integrators.klsl"}) {
        Editor editor(client, UriOf(folder + "/" + file), ReadFile(folder + "/" + file));
        for (int count = CountEdits(); count > 0 && !testing::Test::HasFailure(); --count) {
            editor.Edit(random);
            editor.Ask(random);
        }
    }
    EXPECT_EQ(client.End(), 0);
}

} // namespace
} // namespace Tolen::Tests
