#pragma once

#include "engine/CallMemory.h"
#include "engine/Place.h"
#include "engine/ProgramLayout.h"
#include "engine/UsageScan.h"

#include "compiler/LinkedProgram.h"
#include "compiler/Statements.h"

#include <deque>
#include <span>
#include <string>
#include <unordered_map>

namespace Tolen::OpenKL {

enum class Entry { Setup, Main };

/// Limits of the engine. Reaching one fails the kernel with a message.
struct TranslationLimits {
    int nesting = 0;            ///< levels of statements, expressions and calls in one another
    std::size_t operations = 0; ///< once all calls are inlined
    bool sharesCalls = true;    ///< leaves out what has been computed or done already
};

enum class TranslationResult { Done, TooDeep, TooLarge };

/// Turns one entry function of a checked stage, and all that it calls, into structured form.
class Translator {
public:
    Translator(const LinkedProgram& program, const LinkedStage& stage, const KernelLayout& layout,
               const std::vector<int>& globalWords, const TranslationLimits& limits, IrUnit& unit);

    TranslationResult Translate(Entry entry);

    /// The function in which a limit was reached; null when none was.
    const Function* GetStop() const { return _pStop; }

private:
    /// A function that is being inlined. One that returns at its end alone stands in the open
    /// region, without a block.
    struct Frame {
        const Function* pFunction;
        std::uint32_t block = kNone;
        std::uint32_t firstResult = kNone; ///< variables that take what return gives
        Values result;                     ///< what return gives, where there is no block
        std::int32_t text = 0;
    };

    // Globals (TranslatorGlobals.cpp)

    void _FindTexts();
    void _MakeGlobals(Entry entry);
    void _MakeGlobal(Entry entry, std::size_t index, bool isWritten, bool isDynamic);
    void _MakeBuiltins(Entry entry);
    void _MakeRayCount(Entry entry);
    WordStore _MakeBuiltin(BuiltinVariable builtin, Entry entry);
    Values _LoadLanes(std::initializer_list<LaneInput> inputs, Entry entry);
    void _StoreWords(IrKind kind, std::uint32_t first, const WordStore& source, const Type& type);
    void _StoreState();
    void _StoreOutputs();
    void _PassRayAttributes();
    Values _GetRayAttributes();
    /// Storage for a new variable of the open region, without a first value.
    WordStore _MakeStore(const Type& type, bool isDynamic);
    void _Fill(const WordStore& store, const Type& type, const Values& values);
    void _FillWithZeros(const WordStore& store, const Type& type);

    // Statements (TranslatorStatements.cpp)

    void _TranslateStatement(const Statement& statement);
    void _TranslateDeclaration(const DeclarationStatement& declaration);
    void _TranslateIf(const IfStatement& choice);
    void _TranslateLongIf(const IfStatement& choice);
    /// Whether the branch of an If that holds ends by leaving a block or the round of a loop.
    bool _EndsEarly(std::uint32_t index) const;
    void _TranslateLoop(const LoopStatement& loop);
    void _TranslateReturn(const ReturnStatement& statement);

    // Calls (TranslatorCalls.cpp)

    Values _Call(const Function& function, std::span<const Expression* const> arguments);
    /// The arguments from left to right, one entry each; those of parameters that are copied out
    /// add where to.
    std::vector<Values> _EvaluateArguments(const Function& function,
                                           std::span<const Expression* const> arguments,
                                           std::vector<Place>& targets);
    CallMemory::Call _Inline(const Function& function, std::vector<Values> arguments);
    void _BindParameters(const Function& function, std::vector<Values> arguments);
    void _TranslateBody(const Function& function);
    void _TranslateStraightBody(const Function& function);
    bool _ReturnsAtEnd(const Function& function);

    // Expressions (TranslatorExpressions.cpp)

    Values _Evaluate(const Expression& expression);
    Values _EvaluateUnchained(const Expression& expression);
    ValueId _EvaluateScalar(const Expression& expression) { return _Evaluate(expression)[0]; }
    Values _EvaluateLiteral(const LiteralExpression& literal);
    Values _EvaluateUnary(const UnaryExpression& unary);
    Values _EvaluateAssign(const AssignExpression& assign);
    Values _EvaluateIncrement(const IncrementExpression& increment);
    Values _EvaluateConditional(const ConditionalExpression& conditional);
    Values _EvaluateConstruct(const ConstructExpression& construct);
    Values _EvaluateBlockElement(const BlockElementExpression& element);
    Values _EvaluateBuiltinCall(const BuiltinCallExpression& call);
    Values _EvaluatePart(const Expression& expression);
    Values _Combine(BinaryOperator operation, const Type& leftType, const Values& left,
                    const Type& rightType, const Values& right);
    Values _EvaluateLogical(BinaryOperator operation, ValueId left, const Expression& right);
    Values _Equals(const Type& type, const Values& left, const Values& right);
    Place _MakePlace(const Expression& expression);
    Place _MakeIndexedPlace(const IndexExpression& subscript);
    Place _MakeTemporary(const Type& type, Values values);
    const WordStore& _GetStore(const Variable& variable);
    /// Whether evaluating an expression for nothing does no harm and costs little.
    static bool _IsCheap(const Expression& expression);

    // Functions with effects or services (TranslatorServices.cpp)

    Values _CallService(const BuiltinCallExpression& call);
    Values _CallSpawn(const std::vector<Values>& arguments);
    Values _CallTexture(const std::vector<Values>& arguments);
    Values _CallRandom(bool isPair);
    Values _CallModf(const BuiltinCallExpression& call);

    /// Counts a level of recursion for its lifetime.
    class Level {
    public:
        explicit Level(Translator& translator) : _translator(translator) {
            ++_translator._level;
            if (_translator._level > _translator._limits.nesting) {
                _translator._Stop(TranslationResult::TooDeep);
            }
        }
        ~Level() { --_translator._level; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Translator& _translator;
    };

    /// True once a limit is reached: what is left is skipped.
    bool _IsStopped();
    void _Stop(TranslationResult result);

    const LinkedProgram& _program;
    const LinkedStage& _stage;
    const KernelLayout& _layout;
    const std::vector<int>& _globalWords;
    const TranslationLimits _limits;
    IrUnit& _unit;
    IrBuilder _builder;
    ValueMath _math;
    PlaceAccess _access;
    CallMemory _memory;

    Entry _entry = Entry::Main;
    Usage _usage;
    std::unordered_map<const Function*, std::int32_t> _textOf;
    std::unordered_map<const Function*, bool> _returnsAtEnd; ///< of the functions seen so far
    std::deque<WordStore> _globals;                          ///< one for each of the stage's
    std::unordered_map<int, WordStore> _builtins;
    std::unordered_map<const Variable*, WordStore> _locals;
    std::deque<WordStore> _temporaries; ///< of values that are subscripted
    std::uint32_t _randomCalls = kNone; ///< variable that counts them
    std::vector<Frame> _frames;
    std::vector<std::uint32_t> _loops; ///< open ones of the innermost frame last
    int _level = 0;
    TranslationResult _result = TranslationResult::Done;
    const Function* _pStop = nullptr;
};

} // namespace Tolen::OpenKL
