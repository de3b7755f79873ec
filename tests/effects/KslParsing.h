#pragma once

#include "KslParser.h"
#include "KslTreeText.h"

#include "TolenEffects/Module.h"

#include <memory>
#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

/// A parsed text with its messages.
struct Parsed {
    std::unique_ptr<std::string> file = std::make_unique<std::string>("t.ksl");
    std::unique_ptr<Module> module{Module::Create(nullptr)};
    std::vector<std::string> errors;
    bool success = false;

    /// All messages joined.
    std::string Errors() const {
        std::string text;
        for (const std::string& error : errors) {
            text += error;
        }
        return text;
    }
};

inline Parsed Parse(const std::string& source, int line = 0) {
    Parsed parsed;
    parsed.success =
        KslParser::Parse(parsed.module.get(), parsed.errors, *parsed.file, source, line);
    return parsed;
}

/// The tree of a correct text; the messages of one with errors.
inline std::string ParseToText(const std::string& source, Ranges ranges = Ranges::Hidden) {
    const Parsed parsed = Parse(source);
    return parsed.success ? TreeText(*parsed.module, ranges) : parsed.Errors();
}

/// The tree of an expression.
inline std::string ParseExpression(const std::string& source, Ranges ranges = Ranges::Hidden) {
    return ParseToText("{" + source + "}", ranges);
}

/// The tree of a statement.
inline std::string ParseStatement(const std::string& source, Ranges ranges = Ranges::Hidden) {
    return ParseToText("[" + source + "]", ranges);
}

} // namespace Tolen::Effects::Tests
