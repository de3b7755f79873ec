#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>

namespace Tolen::Tests {
namespace {

using testing::Contains;
using testing::HasSubstr;

std::vector<CodeBlock> _BlocksOf(const std::string& document, const std::string& language) {
    std::vector<CodeBlock> blocks;
    for (const CodeBlock& block : ReadCodeBlocks(document)) {
        if (block.language == language) {
            blocks.push_back(block);
        }
    }
    return blocks;
}

TEST(Readme, ShowsPartsOfTheClientThatIsBuilt) {
    const std::string client = ReadText(SourceFolder() + "/examples/hello/hello.cpp");
    for (const char* language : {"klsl", "cpp"}) {
        const std::vector<CodeBlock> blocks = _BlocksOf("README.md", language);
        ASSERT_EQ(blocks.size(), 1U) << language;
        EXPECT_THAT(client, HasSubstr(blocks[0].text));
    }
}

TEST(Readme, ShowsWhatTheClientPrints) {
    const Ended run = RunProgram("hello", {});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    std::vector<std::string> texts;
    for (const CodeBlock& block : _BlocksOf("README.md", "text")) {
        texts.push_back(block.text);
    }
    // The line ends of the picture are blank where nothing is hit.
    EXPECT_THAT(texts, Contains(std::regex_replace(run.output, std::regex(" +\n"), "\n")));
}

TEST(Readme, NamesScriptsAndFoldersThatExist) {
    const std::string text = ReadText(SourceFolder() + "/README.md");
    const std::regex path("`((?:scripts|libraries|tools|shaders|examples|tests|docs|benchmarks)/"
                          "[\\w./-]*)`");
    int count = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), path), end; found != end; ++found) {
        const std::string name = (*found)[1];
        EXPECT_TRUE(std::filesystem::exists(SourceFolder() + "/" + name)) << name;
        ++count;
    }
    EXPECT_GT(count, 10);
}

TEST(Readme, NamesEveryOptionOfTheScripts) {
    const std::string readme = ReadText(SourceFolder() + "/README.md");
    for (const char* script : {"scripts/demo", "scripts/test"}) {
        EXPECT_THAT(readme, HasSubstr(script));
        const std::string text = ReadText(SourceFolder() + "/" + script);
        const std::regex option("#   (--\\w+)");
        for (std::sregex_iterator found(text.begin(), text.end(), option), end; found != end;
             ++found) {
            EXPECT_THAT(readme, HasSubstr(std::string((*found)[1])));
        }
    }
}

TEST(Documents, NameSourcesThatExist) {
    std::set<std::string> files;
    for (const char* folder : {"libraries", "tools", "examples", "tests"}) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(SourceFolder() + "/" + folder)) {
            files.insert(entry.path().filename().string());
        }
    }
    int count = 0;
    for (const std::string& document : ListDocuments()) {
        const std::string text = ReadText(SourceFolder() + "/" + document);
        const std::regex source("`(?:[\\w-]+/)*([\\w-]+\\.(?:h|cpp|inl))`");
        for (std::sregex_iterator found(text.begin(), text.end(), source), end; found != end;
             ++found) {
            EXPECT_EQ(files.count((*found)[1]), 1U) << document << ": " << (*found)[1];
            ++count;
        }
    }
    EXPECT_GT(count, 20);
}

TEST(Documents, LinkToFilesThatExist) {
    for (const std::string& document : ListDocuments()) {
        const std::filesystem::path folder =
            (std::filesystem::path(SourceFolder()) / document).parent_path();
        for (const std::string& link : ReadLinks(document)) {
            if (link.rfind("https://", 0) != 0 && link.front() != '#') {
                const std::string file = link.substr(0, link.find('#'));
                EXPECT_TRUE(std::filesystem::exists(folder / file)) << document << ": " << link;
            }
        }
    }
}

TEST(Documents, LinkToHeadingsThatExist) {
    const auto readAnchors = [](const std::string& document) {
        // As on the usual hosts: small letters, blanks as hyphens, other marks gone.
        const std::string text = ReadText(SourceFolder() + "/" + document);
        const std::regex heading("(?:^|\n)#+ ([^\n]*)");
        std::vector<std::string> found;
        for (std::sregex_iterator at(text.begin(), text.end(), heading), end; at != end; ++at) {
            std::string anchor;
            for (const char c : (*at)[1].str()) {
                const auto letter = static_cast<unsigned char>(c);
                if (std::isalnum(letter) != 0 || c == '-' || c == '_') {
                    anchor += static_cast<char>(std::tolower(letter));
                } else if (c == ' ') {
                    anchor += '-';
                }
            }
            found.push_back(anchor);
        }
        return found;
    };
    std::map<std::string, std::vector<std::string>> anchors;
    for (const std::string& document : ListDocuments()) {
        for (const std::string& link : ReadLinks(document)) {
            const std::size_t hash = link.find('#');
            if (hash == std::string::npos || link.rfind("https://", 0) == 0) {
                continue;
            }
            const std::string folder =
                std::filesystem::path(document).parent_path().generic_string();
            const std::string target =
                hash == 0 ? document
                          : (std::filesystem::path(folder) / link.substr(0, hash))
                                .lexically_normal()
                                .generic_string();
            const auto [known, isNew] = anchors.try_emplace(target);
            if (isNew) {
                known->second = readAnchors(target);
            }
            EXPECT_THAT(known->second, Contains(link.substr(hash + 1)))
                << document << ": " << link;
        }
    }
}

} // namespace
} // namespace Tolen::Tests
