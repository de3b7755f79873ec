#include "SourceLines.h"

#include "IParser.h"
#include "KslScanner.h"
#include "KslToken.h"
#include "TolenEffects/Syntax.h"

#include <fstream>

namespace Tolen::Klsl {

namespace {

using namespace Effects;

/// Finds the tokens of a line that go by a name.
class TokenFinder : public IParser {
public:
    TokenFinder(const std::string& line, const std::string& name) : _line(line), _name(name) {}

    void ParseConstantBool(const LocationRange& range, bool) override {
        _Check(range, kToken_BoolConstant);
    }
    bool ParseConstantInt(const LocationRange& range, long) override {
        return _Check(range, kToken_IntConstant);
    }
    bool ParseConstantFloat(const LocationRange& range, const char*, int) override {
        return _Check(range, kToken_FloatConstant);
    }
    bool ParseKeyword(const LocationRange& range, int token) override {
        return _Check(range, token);
    }
    bool ParseIdentifier(const LocationRange& range, const char*, int) override {
        return _Check(range, kToken_Identifier);
    }
    bool NewLine() override { return true; }

    int count = 0;
    std::size_t column = 0; ///< of the last one, from 0

private:
    bool _Check(const LocationRange& range, int token) {
        const auto first = static_cast<std::size_t>(range.firstColumn);
        const auto length = static_cast<std::size_t>(range.lastColumn) - first;
        if (_line.compare(first, length, _name) == 0 || _name == kTokenTexts[token]) {
            ++count;
            column = first;
        }
        return true;
    }

    const std::string& _line;
    const std::string& _name;
};

} // namespace

const std::string* SourceLines::Find(const std::string& file, int line) {
    const auto [entry, isNew] = _files.try_emplace(file);
    std::vector<std::string>& lines = entry->second;
    if (isNew) {
        std::ifstream stream(file);
        for (std::string text; std::getline(stream, text);) {
            text.erase(text.find_last_not_of("\r") + 1);
            lines.push_back(text);
        }
    }
    const bool isThere = line >= 1 && static_cast<std::size_t>(line) <= lines.size();
    return isThere ? &lines[static_cast<std::size_t>(line) - 1] : nullptr;
}

std::string Caret(const std::string& line, const std::string& subject) {
    TokenFinder finder(line, subject);
    KslScanner scanner;
    scanner.Init(&finder, line, 0);
    scanner.Scan();
    if (subject.empty() || finder.count != 1) {
        return "";
    }
    std::string caret = line.substr(0, finder.column);
    for (char& character : caret) {
        character = character == '\t' ? '\t' : ' ';
    }
    return caret + "^";
}

} // namespace Tolen::Klsl
