#include "ParserErrors.h"

#include "language/PreprocessedText.h"
#include "language/Suggestion.h"

#include "KslParser.h"
#include "KslToken.h"

#include <map>
#include <memory>

namespace Tolen::Language {

using namespace Effects;

namespace {

/// The parser, keeping its tokens and those at which it found errors.
class TokenKeeper : public KslParser {
public:
    struct KeptToken {
        int code;
        SourceRange range;
    };

    explicit TokenKeeper(const SourceText& text) : _text(text) {}

    void ParseConstantBool(const LocationRange& range, bool value) override {
        _Keep(kToken_BoolConstant, range);
        KslParser::ParseConstantBool(range, value);
        _KeepErrors();
    }
    bool ParseConstantInt(const LocationRange& range, long value) override {
        _Keep(kToken_IntConstant, range);
        return _KeepErrors(KslParser::ParseConstantInt(range, value));
    }
    bool ParseConstantFloat(const LocationRange& range, const char* text, int length) override {
        _Keep(kToken_FloatConstant, range);
        return _KeepErrors(KslParser::ParseConstantFloat(range, text, length));
    }
    bool ParseKeyword(const LocationRange& range, int token) override {
        _Keep(token, range);
        return _KeepErrors(KslParser::ParseKeyword(range, token));
    }
    bool ParseIdentifier(const LocationRange& range, const char* text, int length) override {
        _Keep(kToken_Identifier, range);
        return _KeepErrors(KslParser::ParseIdentifier(range, text, length));
    }

    const std::vector<KeptToken>& GetTokens() const { return _tokens; }
    /// The tokens in work at each error. @return the last one for errors at the end of the text
    std::size_t GetTokenOfError(std::size_t error) const {
        return error < _tokensOfErrors.size() ? _tokensOfErrors[error] : _tokens.size() - 1;
    }
    std::string_view GetText(const KeptToken& token) const { return _text.GetText(token.range); }

private:
    void _Keep(int code, const LocationRange& range) {
        // The scanner counts the columns of all lines but the first from the line feed before.
        const std::size_t line = _text.GetLineRange(range.firstLine).begin;
        const std::size_t begin =
            line + static_cast<std::size_t>(range.firstColumn) - (range.firstLine > 1 ? 1 : 0);
        const auto length = static_cast<std::size_t>(range.lastColumn - range.firstColumn);
        _tokens.push_back({code, {begin, begin + length}});
    }
    bool _KeepErrors(bool answer = true) {
        _tokensOfErrors.resize(GetErrors().size(), _tokens.size() - 1);
        return answer;
    }

    const SourceText& _text;
    std::vector<KeptToken> _tokens;
    std::vector<std::size_t> _tokensOfErrors;
};

/// The text of an error without "file(line) : " and the line feed.
std::string WithoutPlace(const std::string& error) {
    static constexpr std::string_view kSeparator = ") : ";
    const std::size_t begin = error.find(kSeparator);
    std::string text = begin == std::string::npos ? error : error.substr(begin + kSeparator.size());
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

/// Finds what the messages of one text mean among its tokens.
class ErrorPlacer {
public:
    explicit ErrorPlacer(const TokenKeeper& parser) : _parser(parser) {}

    ParserError Place(const std::string& text, std::size_t token) const {
        ParserError error;
        error.text = text;
        if (text.starts_with("Duplicate class")) {
            _PlaceDuplicate(kToken_Class, token, error);
        } else if (text.starts_with("Duplicate interface")) {
            _PlaceDuplicate(kToken_Interface, token, error);
        } else if (text.starts_with("Conflicting")) {
            _PlaceConflict(token, error);
        } else {
            error.range = _Tokens()[token].range;
            if (text.starts_with("Syntax Error")) {
                _SuggestKeyword(token, error);
            }
        }
        return error;
    }

private:
    const std::vector<TokenKeeper::KeptToken>& _Tokens() const { return _parser.GetTokens(); }

    /// A name that doesn't fit, or behind which nothing fits, may be a keyword in truth.
    void _SuggestKeyword(std::size_t token, ParserError& error) const {
        if (_Tokens()[token].code == kToken_Identifier) {
            error.suggestion = SuggestKeyword(_parser.GetText(_Tokens()[token]));
        }
        if (error.suggestion.empty() && token > 0 &&
            _Tokens()[token - 1].code == kToken_Identifier) {
            const std::string_view word = _parser.GetText(_Tokens()[token - 1]);
            const std::string keyword = SuggestKeyword(word);
            if (!keyword.empty()) {
                error.other = _Tokens()[token - 1].range;
                error.otherText = "is '" + std::string(word) + "' meant to be '" + keyword + "'?";
            }
        }
    }

    static std::string SuggestKeyword(std::string_view word) {
        std::vector<std::string> keywords;
        for (int code = 1; code < kToken_Count; ++code) {
            const std::string text = kTokenTexts[code];
            if (text.find_first_not_of("abcdefghijklmnopqrstuvwxyzD234") == std::string::npos &&
                code != kToken_Identifier && code != kToken_Struct) {
                keywords.push_back(text);
            }
        }
        return Suggest(word, keywords);
    }

    /// The name behind the last @p keyword up to @p token, and that of the first of this name.
    void _PlaceDuplicate(int keyword, std::size_t token, ParserError& error) const {
        std::map<std::string_view, SourceRange> first;
        for (std::size_t i = 1; i <= token; ++i) {
            if (_Tokens()[i - 1].code == keyword && _Tokens()[i].code == kToken_Identifier) {
                const SourceRange range = _Tokens()[i].range;
                error.range = range;
                error.other = first.emplace(_parser.GetText(_Tokens()[i]), range).first->second;
            }
        }
        error.otherText = "the first one is here";
    }

    /// The declaration ends before @p token; the other one is in the same class.
    void _PlaceConflict(std::size_t token, ParserError& error) const {
        std::size_t name = token;
        while (name > 0 && !_IsCoordOrOutput(name)) {
            --name;
        }
        error.range = _Tokens()[name].range;
        for (std::size_t i = name; i-- > 2 && _Tokens()[i].code != kToken_Class;) {
            if (_IsCoordOrOutput(i) &&
                _parser.GetText(_Tokens()[i]) == _parser.GetText(_Tokens()[name])) {
                error.other = _Tokens()[i].range;
            }
        }
        error.otherText = "the first one is here";
    }

    bool _IsCoordOrOutput(std::size_t name) const {
        if (name < 2 || name + 1 >= _Tokens().size() || _Tokens()[name].code != kToken_Identifier ||
            _Tokens()[name + 1].code != kToken_Semicolon) {
            return false;
        }
        const int keyword = _Tokens()[name - 2].code;
        return keyword == kToken_Coord || keyword == kToken_Normal || keyword == kToken_Tangent ||
               keyword == kToken_Output || keyword == kToken_Out;
    }

    const TokenKeeper& _parser;
};

} // namespace

std::vector<ParserError> FindParserErrors(const PreprocessedText& text) {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    const std::string file = "text";
    TokenKeeper parser(text.GetText());
    parser.Init();
    parser.Parse(module.get(), file, text.GetText().GetText(), 0);
    const ErrorPlacer placer(parser);
    std::vector<ParserError> errors;
    for (std::size_t i = 0; i < parser.GetErrors().size(); ++i) {
        const std::string message = WithoutPlace(parser.GetErrors()[i]);
        if (parser.GetTokens().empty()) {
            errors.push_back({message, {}, {}, {}, {}});
        } else {
            errors.push_back(placer.Place(message, parser.GetTokenOfError(i)));
        }
    }
    parser.Shutdown();
    return errors;
}

} // namespace Tolen::Language
