#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// Follows braces, brackets and statements through the tokens of a source, also of one that is
/// wrong: what is closed without being open is passed over, and what is closed too late is closed
/// with what is around it. Depth costs memory alone, and each token the same time on average.
class Nesting {
public:
    enum Kind : std::uint8_t {
        kKind_File,
        kKind_Block,   ///< braces, of whatever
        kKind_Group,   ///< parentheses or square brackets
        kKind_Head,    ///< `if`, `for`, `while`: what is in the parentheses is to come, or coming
        kKind_Control, ///< these and `else` and `do`: the statement is to come, or coming
        kKind_DoTail,  ///< the condition behind the statement of a `do`
    };

    struct Frame {
        Kind kind = kKind_File;
        char control = ' ';     ///< of heads and controls, the first letter of the word
        std::int32_t level = 0; ///< by how much the line is indented that it begins on
        std::size_t token = 0;  ///< that began it, as given to Step
        std::uint32_t parent = 0;
        std::uint32_t depth = 0; ///< the number of frames around it
    };

    Nesting();

    const Frame& GetTop() const { return _frames[_top]; }
    /// @param frame not the file's
    const Frame& GetParent(const Frame& frame) const { return _frames[frame.parent]; }
    std::uint32_t GetDepth() const { return GetTop().depth; }

    /// Whether the next token begins a statement, or a declaration outside of functions.
    bool IsAtStart() const { return _isAtStart; }
    /// The level that a line has which begins here with a statement's first token, @p text.
    std::int32_t GetLevel(std::string_view text) const;
    /// Whether the next token is inside the parentheses of a `for`, not deeper.
    bool IsInForHead() const;

    /// Goes on behind a token that is no comment and no directive.
    /// @param token  any number that tells tokens apart
    /// @param next   the text of the token behind it, empty when there is none
    /// @param isFirstOnLine whether it begins a line, by which `else if` is told from an `if` below
    void Step(std::size_t token, std::string_view text, std::string_view next, bool isFirstOnLine);

    /// Ends the statement that the tokens so far have begun.
    void EndStatement();
    /// Closes what is deeper than @p depth and ends the statement there.
    void CloseTo(std::uint32_t depth);

    /// Conditions of directives: each branch begins where the first one began.
    /// @{
    void BeginCondition();
    void NextBranch();
    void EndCondition();
    /// @}

private:
    void _Push(Frame frame);
    void _Pop() { _top = GetTop().parent; }
    /// Puts a frame in the place of the top, which an earlier branch may still need.
    void _Replace(Kind kind);
    void _LeaveGroups();
    void _CloseGroup();
    void _CloseBlock(std::string_view next);
    void _CompleteStatement(std::string_view next);
    void _BeginStatement(std::size_t token, std::string_view text, bool isFirstOnLine);

    std::vector<Frame> _frames; ///< a tree: a branch may go on where an earlier one began
    std::uint32_t _top = 0;
    bool _isAtStart = true;
    struct Condition {
        std::uint32_t top;
        bool isAtStart;
    };
    std::vector<Condition> _conditions;
};

} // namespace Tolen::Language
