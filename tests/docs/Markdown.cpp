#include "Markdown.h"

#include "support/paths/SourceFolder.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace Tolen::Tests {

namespace {

constexpr const char* kFence = "```";

bool _IsFence(const std::string& line) {
    return line.rfind(kFence, 0) == 0;
}

std::string _ReadDocument(const std::string& document) {
    return ReadText(SourceFolder() + "/" + document);
}

} // namespace

bool CodeBlock::HasMark(const std::string& mark) const {
    return std::find(marks.begin(), marks.end(), mark) != marks.end();
}

std::string CodeBlock::GetMark(const std::string& mark, const std::string& otherwise) const {
    for (const std::string& candidate : marks) {
        if (candidate.rfind(mark + "=", 0) == 0) {
            return candidate.substr(mark.size() + 1);
        }
    }
    return otherwise;
}

void PrintTo(const CodeBlock& block, std::ostream* stream) { *stream << block.GetPlace(); }

std::string ReadText(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<CodeBlock> ReadCodeBlocks(const std::string& document) {
    std::istringstream lines(_ReadDocument(document));
    std::vector<CodeBlock> blocks;
    std::string section;
    bool isInside = false;
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (_IsFence(line)) {
            isInside = !isInside;
            if (isInside) {
                std::istringstream words(line.substr(3));
                CodeBlock& block = blocks.emplace_back();
                block.document = document;
                block.line = number;
                block.section = section;
                words >> block.language;
                for (std::string mark; words >> mark;) {
                    block.marks.push_back(mark);
                }
            }
        } else if (isInside) {
            blocks.back().text += line + "\n";
        } else if (line.starts_with('#')) {
            section = line.substr(line.find_first_not_of("# "));
        }
    }
    return blocks;
}

std::vector<std::string> ReadLinks(const std::string& document) {
    std::istringstream lines(_ReadDocument(document));
    std::vector<std::string> links;
    bool isInside = false;
    const std::regex code("`[^`]*`");
    const std::regex link("\\]\\(([^)\\s]+)\\)");
    for (std::string line; std::getline(lines, line);) {
        if (_IsFence(line)) {
            isInside = !isInside;
        }
        if (isInside) {
            continue;
        }
        const std::string prose = std::regex_replace(line, code, "code");
        for (std::sregex_iterator found(prose.begin(), prose.end(), link), end; found != end;
             ++found) {
            links.push_back((*found)[1]);
        }
    }
    return links;
}

std::vector<std::string> ListDocuments() {
    std::vector<std::string> documents;
    const std::filesystem::path folder = SourceFolder();
    std::filesystem::recursive_directory_iterator entry(folder), end;
    for (; entry != end; ++entry) {
        const std::string name = entry->path().filename().string();
        if (entry->is_directory() && (name.starts_with('.') || name.rfind("build", 0) == 0)) {
            entry.disable_recursion_pending();
        } else if (entry->path().extension() == ".md") {
            documents.push_back(entry->path().lexically_relative(folder).generic_string());
        }
    }
    std::sort(documents.begin(), documents.end());
    return documents;
}

bool IsGuide(const std::string& document) {
    return document.rfind("docs/guides/", 0) == 0;
}

std::string NameOf(const CodeBlock& block) {
    std::string name;
    for (const char c : block.section) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            name += c;
        } else if (!name.empty() && name.back() != '_') {
            name += '_';
        }
    }
    return name + (name.empty() || name.back() != '_' ? "_" : "") + "line_" +
           std::to_string(block.line);
}

} // namespace Tolen::Tests
