#include "support/DeclaredNames.h"

#include <algorithm>
#include <cctype>

namespace Tolen::Tests {

namespace {

bool IsWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Words and single other characters, without white space and comments.
std::vector<std::string> Tokenize(const std::string& text) {
    std::vector<std::string> tokens;
    for (std::size_t i = 0; i < text.size();) {
        if (text.compare(i, 2, "//") == 0) {
            i = std::min(text.find('\n', i), text.size());
        } else if (text.compare(i, 2, "/*") == 0) {
            const std::size_t end = text.find("*/", i + 2);
            i = end == std::string::npos ? text.size() : end + 2;
        } else if (std::isspace(static_cast<unsigned char>(text[i])) != 0) {
            ++i;
        } else {
            const std::size_t begin = i++;
            while (IsWordCharacter(text[begin]) && i < text.size() && IsWordCharacter(text[i])) {
                ++i;
            }
            tokens.push_back(text.substr(begin, i - begin));
        }
    }
    return tokens;
}

/// Adds the declared names of `T a = x, b[2]`; @p statement starts with the type.
void AddDeclarators(const std::vector<std::string>& statement, std::vector<std::string>& names) {
    bool isName = false;
    int depth = 0;
    for (std::size_t i = 0; i < statement.size(); ++i) {
        const std::string& token = statement[i];
        if (token == "[" || token == "(") {
            ++depth;
        } else if (token == "]" || token == ")") {
            --depth;
        } else if (isName && depth == 0) {
            names.push_back(token);
            isName = false;
        } else if (i == 0 || (token == "," && depth == 0)) {
            isName = true;
        }
    }
}

} // namespace

DeclaredNames FindDeclaredNames(const std::string& text) {
    DeclaredNames names;
    std::vector<std::string> statement;
    int depth = 0;
    for (const std::string& token : Tokenize(text)) {
        if (token == "{") {
            if (depth++ == 0 && statement.size() == 2 && statement[0] == "uniformblock") {
                names.blocks.push_back(statement[1]);
            }
            statement.clear();
        } else if (token == "}") {
            --depth;
            statement.clear();
        } else if (depth == 0 && token == ";") {
            const auto after = [&](const char* qualifier) {
                const auto found = std::find(statement.begin(), statement.end(), qualifier);
                return found == statement.end()
                           ? std::vector<std::string>()
                           : std::vector<std::string>(found + 1, statement.end());
            };
            AddDeclarators(after("uniform"), names.uniforms);
            AddDeclarators(after("attribute"), names.attributes);
            statement.clear();
        } else if (depth == 0) {
            statement.push_back(token);
        }
    }
    return names;
}

} // namespace Tolen::Tests
