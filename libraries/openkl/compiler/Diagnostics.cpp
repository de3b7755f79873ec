#include "compiler/Diagnostics.h"

#include "compiler/Limits.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

constexpr std::size_t kMaxQuotedBytes = 64;

void AppendLine(std::string& out, int line, std::string_view kind, std::string_view text) {
    if (!out.empty()) {
        out += '\n';
    }
    out += "String 0 Line ";
    out += std::to_string(line);
    out += ": ";
    out += kind;
    out += ": ";
    out += text;
}

} // namespace

void Diagnostics::Error(int line, std::string text) {
    _wasLastDropped = IsFull();
    if (!_wasLastDropped) {
        _errors.push_back({line, std::move(text), {}});
    }
}

void Diagnostics::FinalError(int line, std::string text) {
    Error(line, std::move(text));
    _isClosed = true;
}

void Diagnostics::Note(int line, std::string text) {
    if (!_wasLastDropped && !_errors.empty()) {
        _errors.back().notes.push_back({line, std::move(text), {}});
    }
}

bool Diagnostics::IsFull() const {
    return _isClosed || _errors.size() >= kMaxMessages;
}

std::string Diagnostics::ToString() const {
    std::vector<const Message*> sorted;
    for (const Message& error : _errors) {
        sorted.push_back(&error);
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Message* a, const Message* b) { return a->line < b->line; });
    std::string out;
    for (const Message* error : sorted) {
        AppendLine(out, error->line, "error", error->text);
        for (const Message& note : error->notes) {
            AppendLine(out, note.line, "note", note.text);
        }
    }
    return out;
}

std::string Quote(std::string_view text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out = "'";
    for (char c : text.substr(0, kMaxQuotedBytes)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f) {
            out += c;
        } else {
            out += "\\x";
            out += kDigits[byte >> 4];
            out += kDigits[byte & 15];
        }
    }
    if (text.size() > kMaxQuotedBytes) {
        out += "...";
    }
    return out + "'";
}

} // namespace Tolen::OpenKL
