#pragma once

#include "compiler/LinkedProgram.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

/// Collects the messages of one link.
class LinkMessages {
public:
    /// @param program the name of the program, which starts every line
    explicit LinkMessages(std::string_view program);

    void Error(const std::string& text);
    bool HasErrors() const { return _count > 0; }
    const std::string& ToString() const { return _text; }

private:
    std::string _prefix;
    std::string _text;
    int _count = 0;
};

/// A line of one of the texts, for messages: "'shadows' line 12".
std::string Locate(const LinkInput& text, int line);

/// Makes one stage of several texts: one variable of what they declare under one name, one function
/// of its definition and all of its prototypes.
class StageLinker {
public:
    /// @param texts all of the stage of @p stage
    StageLinker(std::span<const LinkInput* const> texts, LinkedStage& stage,
                LinkMessages& messages);

    void Link();

    /// Where a global of the stage is declared first, for messages.
    std::string LocateGlobal(std::size_t global) const;

private:
    /// A function by its name and the types of its parameters.
    struct Entry {
        const Function* first = nullptr; ///< the first declaration
        const LinkInput* firstText = nullptr;
        const Function* definition = nullptr;
        const LinkInput* definitionText = nullptr;
        enum { kUnseen, kOpen, kDone } state = kUnseen;
        bool wasReported = false;
    };

    /// A function whose callees are being walked.
    struct Visit {
        Entry* entry;
        std::size_t nextCallee;
    };

    void _MergeGlobals();
    void _MergeGlobal(const LinkInput& text, const Variable& variable);
    void _CollectFunctions();
    void _CollectFunction(const LinkInput& text, const Function& function);
    void _WalkCalls();
    /// Walks everything that @p root reaches. @param isReachable whether the program runs it
    void _Walk(Entry& root, bool isReachable);
    /// Notes what a call means. @return the function to walk into, or null
    Entry* _Resolve(const Function& callee, const LinkInput& caller, bool isReachable);
    void _ReportCycle(const Entry& target);
    Entry* _Find(const std::string& key);

    std::span<const LinkInput* const> _texts;
    LinkedStage& _stage;
    LinkMessages& _messages;
    struct Origin {
        const LinkInput* text;
        int line;
    };
    std::vector<Origin> _origins; ///< of each global
    std::unordered_map<std::string_view, std::size_t> _globals;
    std::unordered_map<std::string, Entry> _functions;
    std::vector<Entry*> _order; ///< `_functions` in order of first declaration
    std::vector<Visit> _path;   ///< the calls that are being walked
};

} // namespace Tolen::OpenKL
