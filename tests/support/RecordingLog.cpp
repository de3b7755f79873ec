#include "support/RecordingLog.h"

namespace Tolen::Tests {

namespace {

bool IsOf(const std::string& line, const std::string& operation) {
    return line.compare(0, operation.size(), operation) == 0 &&
           (line.size() == operation.size() || line[operation.size()] == ' ');
}

} // namespace

std::vector<std::string> RecordingLog::GetLines(const std::string& operation) const {
    std::vector<std::string> lines;
    for (const std::string& line : _lines) {
        if (IsOf(line, operation)) {
            lines.push_back(line);
        }
    }
    return lines;
}

int RecordingLog::GetCount(const std::string& operation) const {
    return static_cast<int>(GetLines(operation).size());
}

void RecordingLog::FailNth(const std::string& operation, int n) {
    _failNth[operation].insert(n);
}

void RecordingLog::FailNone() {
    _failNth.clear();
    _failAll.clear();
}

bool RecordingLog::Begin(const std::string& operation) {
    bool fails = _failAll.count(operation) != 0;
    const auto found = _failNth.find(operation);
    if (found != _failNth.end()) {
        std::multiset<int> toGo;
        for (const int calls : found->second) {
            if (calls == 1) {
                fails = true;
            } else {
                toGo.insert(calls - 1);
            }
        }
        found->second.swap(toGo);
    }
    return !fails;
}

bool RecordingLog::End(const std::string& operation, const std::string& details, bool good) {
    _lines.push_back(operation + (details.empty() ? "" : " ") + details +
                     (good ? "" : " -> failed"));
    return good;
}

} // namespace Tolen::Tests
