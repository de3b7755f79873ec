#include "language/Nesting.h"

namespace Tolen::Language {

Nesting::Nesting() : _frames(1) {}

std::int32_t Nesting::GetLevel(std::string_view text) const {
    const Frame* frame = &GetTop();
    if (text == "}") {
        while (frame->kind != kKind_File && frame->kind != kKind_Block) {
            frame = &GetParent(*frame);
        }
        return frame->level;
    }
    while (text == "{" && frame->kind == kKind_Group) {
        frame = &GetParent(*frame);
    }
    const bool isDeeper =
        frame->kind == kKind_Block || (frame->kind == kKind_Control && text != "{");
    return isDeeper ? frame->level + 1 : frame->level;
}

bool Nesting::IsInForHead() const {
    const Frame& top = GetTop();
    return top.kind == kKind_Group && GetParent(top).kind == kKind_Head &&
           GetParent(top).control == 'f';
}

void Nesting::Step(std::size_t token, std::string_view text, std::string_view next,
                   bool isFirstOnLine) {
    const bool wasAtStart = _isAtStart;
    _isAtStart = false;
    if (text == "{") {
        _LeaveGroups();
        if (GetTop().kind == kKind_Head) {
            _Replace(kKind_Control);
        }
        _Push({.kind = kKind_Block, .level = GetLevel(text), .token = token});
        _isAtStart = true;
    } else if (text == "}") {
        _CloseBlock(next);
    } else if (text == "(" || text == "[") {
        _Push({.kind = kKind_Group, .level = GetTop().level, .token = token});
    } else if (text == ")" || text == "]") {
        _CloseGroup();
    } else if (text == ";" && !IsInForHead()) {
        _CompleteStatement(next);
    } else if (wasAtStart && GetTop().kind != kKind_DoTail) {
        _BeginStatement(token, text, isFirstOnLine);
    }
}

void Nesting::EndStatement() {
    while (GetTop().kind != kKind_File && GetTop().kind != kKind_Block) {
        _Pop();
    }
    _isAtStart = true;
}

void Nesting::CloseTo(std::uint32_t depth) {
    while (GetDepth() > depth) {
        _Pop();
    }
    _isAtStart = true;
}

void Nesting::BeginCondition() {
    _conditions.push_back({_top, _isAtStart});
}

void Nesting::NextBranch() {
    if (!_conditions.empty()) {
        _top = _conditions.back().top;
        _isAtStart = _conditions.back().isAtStart;
    }
}

void Nesting::EndCondition() {
    if (!_conditions.empty()) {
        _conditions.pop_back();
    }
}

void Nesting::_Push(Frame frame) {
    frame.parent = _top;
    frame.depth = GetDepth() + 1;
    _top = static_cast<std::uint32_t>(_frames.size());
    _frames.push_back(frame);
}

void Nesting::_Replace(Kind kind) {
    Frame frame = GetTop();
    frame.kind = kind;
    _Pop();
    _Push(frame);
}

void Nesting::_LeaveGroups() {
    while (GetTop().kind == kKind_Group) {
        _Pop();
    }
}

void Nesting::_CloseGroup() {
    if (GetTop().kind != kKind_Group) {
        return;
    }
    _Pop();
    if (GetTop().kind == kKind_Head) {
        _Replace(kKind_Control);
        _isAtStart = true;
    }
}

void Nesting::_CloseBlock(std::string_view next) {
    EndStatement();
    if (GetTop().kind == kKind_Block) {
        _Pop();
        _CompleteStatement(next);
    }
}

/// Also completes the statements that this one is the last part of.
void Nesting::_CompleteStatement(std::string_view next) {
    _isAtStart = true;
    while (GetTop().kind != kKind_File && GetTop().kind != kKind_Block) {
        const bool isStatementOfControl = GetTop().kind == kKind_Control;
        const char control = GetTop().control;
        if (isStatementOfControl && control == 'd' && next == "while") {
            _Replace(kKind_DoTail);
            return;
        }
        _Pop();
        if (isStatementOfControl && control == 'i' && next == "else") {
            return;
        }
    }
}

void Nesting::_BeginStatement(std::size_t token, std::string_view text, bool isFirstOnLine) {
    const bool hasHead = text == "if" || text == "for" || text == "while";
    if (hasHead || text == "else" || text == "do") {
        const std::int32_t level = isFirstOnLine ? GetLevel(text) : GetTop().level;
        if (text == "if" && !isFirstOnLine && GetTop().kind == kKind_Control &&
            GetTop().control == 'e') {
            // A chain is as deep as its first condition.
            _Pop();
        }
        _Push({.kind = hasHead ? kKind_Head : kKind_Control,
               .control = text.front(),
               .level = level,
               .token = token});
        _isAtStart = !hasHead;
    }
}

} // namespace Tolen::Language
