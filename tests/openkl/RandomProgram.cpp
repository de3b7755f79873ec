#include "RandomProgram.h"

#include "engine/FloatingPointScope.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace Tolen::OpenKL::Testing {

namespace {

constexpr std::size_t kArrayLength = 5;

/// Words of an invocation by slot; floats are kept as their bits.
struct Frame {
    std::vector<std::uint32_t> slots;
};

enum class Flow { Next, Break, Continue, Return };

struct Machine {
    Frame globals;
    std::vector<Frame> frames; ///< the innermost last
    std::vector<float> output;
    RandomProgramInput input;
    std::uint32_t result = 0;
};

/// An expression: its text and what it does. Words are ints, floats or 0 and 1.
struct Node {
    std::string text;
    std::function<std::uint32_t(Machine&)> run;
};

struct Step {
    std::string text;
    std::function<Flow(Machine&)> run;
};

enum class Kind { Float, Int };

/// A variable or an array in reach.
struct Name {
    std::string text;
    Kind kind;
    bool isGlobal;
    bool isArray;
    bool isCounter; ///< not to be assigned
    std::size_t slot;
};

float F(std::uint32_t word) {
    return std::bit_cast<float>(word);
}
std::int32_t I(std::uint32_t word) {
    return static_cast<std::int32_t>(word);
}
std::uint32_t W(float value) {
    return std::bit_cast<std::uint32_t>(value);
}
std::uint32_t W(std::int32_t value) {
    return static_cast<std::uint32_t>(value);
}

std::uint32_t& At(Machine& machine, const Name& name, std::size_t element = 0) {
    Frame& frame = name.isGlobal ? machine.globals : machine.frames.back();
    return frame.slots[name.slot + element];
}

std::int32_t ToInt(float value) {
    if (!(value == value)) {
        return 0;
    }
    if (value >= 2147483648.0f) {
        return 2147483647;
    }
    return value < -2147483648.0f ? std::numeric_limits<std::int32_t>::min()
                                  : static_cast<std::int32_t>(value);
}

std::int32_t Divide(std::int32_t a, std::int32_t b) {
    if (b == 0) {
        return 0;
    }
    return b == -1 ? I(0u - W(a)) : a / b;
}

std::int32_t Remainder(std::int32_t a, std::int32_t b) {
    return b == 0 || b == -1 ? 0 : a % b;
}

std::uint32_t ShiftLeft(std::uint32_t a, std::uint32_t b) {
    return b < 32 ? a << b : 0;
}
std::uint32_t ShiftRight(std::uint32_t a, std::uint32_t b) {
    return b < 32 ? W(I(a) >> b) : 0;
}

struct Function {
    std::string name;
    std::vector<Name> parameters; ///< float, int, inout float, out int
    std::size_t slotCount = 0;
    std::vector<Step> body;
    std::string text;
};

/// Makes programs. Names in reach are a stack; functions see those made ahead of them.
class Maker {
public:
    explicit Maker(std::uint32_t seed) : _random(seed) {}

    std::string text;
    std::size_t globalSlots = 0;
    std::size_t mainSlots = 0;
    std::vector<Step> main;

    void Make() {
        _AddGlobal("gf", Kind::Float, false);
        _AddGlobal("gi", Kind::Int, false);
        _AddGlobal("ga", Kind::Float, true);
        for (int i = 0; i < 2; ++i) {
            _MakeFunction("f" + std::to_string(i));
        }
        _slot = 0;
        _isFunction = false;
        std::size_t mark = _names.size();
        std::string body;
        for (const char* name : {"a", "b", "c"}) {
            _Declare(main, name, Kind::Float, false);
        }
        for (const char* name : {"i", "j", "k"}) {
            _Declare(main, name, Kind::Int, false);
        }
        _Declare(main, "v", Kind::Float, true);
        _Declare(main, "w", Kind::Int, true);
        _MakeStatements(main, 6, 4);
        for (std::size_t i = 0; i < _names.size(); ++i) {
            _AddOutput(main, _names[i]);
        }
        _names.resize(mark);
        mainSlots = _slot + 1;
        for (const Step& step : main) {
            body += step.text;
        }
        text += "void main()\n{\n" + body + "}\n";
    }

private:
    int _Pick(int count) { return static_cast<int>(_random() % static_cast<unsigned>(count)); }

    void _AddGlobal(const std::string& name, Kind kind, bool isArray) {
        _names.push_back({name, kind, true, isArray, false, globalSlots});
        globalSlots += isArray ? kArrayLength : 1;
        text += std::string(kind == Kind::Float ? "float " : "int ") + name +
                (isArray ? "[5];\n" : ";\n");
    }

    void _Declare(std::vector<Step>& steps, const std::string& text_, Kind kind, bool isArray) {
        Name name{text_, kind, false, isArray, false, _slot};
        _slot += isArray ? kArrayLength : 1;
        std::string type = kind == Kind::Float ? "float " : "int ";
        if (isArray || _Pick(4) == 0) {
            std::size_t count = isArray ? kArrayLength : 1;
            steps.push_back(
                {type + text_ + (isArray ? "[5];\n" : ";\n"), [name, count](Machine& machine) {
                     for (std::size_t i = 0; i < count; ++i) {
                         At(machine, name, i) = 0;
                     }
                     return Flow::Next;
                 }});
        } else {
            Node value = _Make(kind, 2);
            steps.push_back(
                {type + text_ + " = " + value.text + ";\n", [name, value](Machine& machine) {
                     std::uint32_t word = value.run(machine);
                     At(machine, name) = word;
                     return Flow::Next;
                 }});
        }
        _names.push_back(name);
    }

    void _AddOutput(std::vector<Step>& steps, const Name& name) {
        std::size_t count = name.isArray ? kArrayLength : 1;
        std::string lines;
        for (std::size_t i = 0; i < count; ++i) {
            std::string value = name.text + (name.isArray ? "[" + std::to_string(i) + "]" : "");
            lines += "accumulate(0, float(" + value + "));\n";
        }
        steps.push_back({lines, [name, count](Machine& machine) {
                             for (std::size_t i = 0; i < count; ++i) {
                                 std::uint32_t word = At(machine, name, i);
                                 machine.output.push_back(name.kind == Kind::Float
                                                              ? F(word)
                                                              : static_cast<float>(I(word)));
                             }
                             return Flow::Next;
                         }});
    }

    // Expressions.

    Node _Make(Kind kind, int depth) {
        return kind == Kind::Float ? _MakeFloat(depth) : _MakeInt(depth);
    }

    const Name* _FindName(Kind kind, bool isArray, bool mustChange) {
        std::vector<const Name*> fitting;
        for (const Name& name : _names) {
            if (name.kind == kind && name.isArray == isArray && !(mustChange && name.isCounter)) {
                fitting.push_back(&name);
            }
        }
        return fitting.empty()
                   ? nullptr
                   : fitting[static_cast<std::size_t>(_Pick(static_cast<int>(fitting.size())))];
    }

    Node _MakeLoad(Kind kind, int depth) {
        bool isArray = _Pick(3) == 0;
        const Name* found = _FindName(kind, isArray, false);
        if (found == nullptr) {
            return _MakeLiteral(kind);
        }
        Name name = *found;
        if (!isArray) {
            return {name.text, [name](Machine& machine) { return At(machine, name); }};
        }
        Node index = _MakeIndex(depth - 1);
        return {name.text + "[" + index.text + "]", [name, index](Machine& machine) {
                    return At(machine, name, _Clamp(index.run(machine)));
                }};
    }

    /// One that no compiler can know to be out of range; kl_SampleIndex is 0.
    Node _MakeIndex(int depth) {
        Node index = _MakeInt(depth);
        index.text = "(" + index.text + " + kl_SampleIndex)";
        return index;
    }

    static std::size_t _Clamp(std::uint32_t index) {
        return static_cast<std::size_t>(std::min(std::max(I(index), 0), 4));
    }

    Node _MakeLiteral(Kind kind) {
        if (kind == Kind::Int) {
            static const std::int32_t values[] = {0, 1, 2, 3, 5, 31, 32, 100, 65537, 2147483647};
            std::int32_t value = values[_Pick(10)];
            return {std::to_string(value), [value](Machine&) { return W(value); }};
        }
        static const char* const texts[] = {"0.0", "1.0", "0.5", "3.25", "100.0", "0.001"};
        static const float values[] = {0.0f, 1.0f, 0.5f, 3.25f, 100.0f, 0.001f};
        int i = _Pick(6);
        float value = values[i];
        return {texts[i], [value](Machine&) { return W(value); }};
    }

    template <class Operation>
    Node _MakeBinary(Kind kind, const char* sign, int depth, Operation operation) {
        Node a = _Make(kind, depth - 1);
        Node b = _Make(kind, depth - 1);
        return {"(" + a.text + " " + sign + " " + b.text + ")",
                [a, b, operation](Machine& machine) {
                    std::uint32_t left = a.run(machine);
                    std::uint32_t right = b.run(machine);
                    return operation(left, right);
                }};
    }

    Node _MakeChoice(Kind kind, int depth) {
        Node condition = _MakeBool(depth - 1);
        Node a = _Make(kind, depth - 1);
        Node b = _Make(kind, depth - 1);
        return {"(" + condition.text + " ? " + a.text + " : " + b.text + ")",
                [condition, a, b](Machine& machine) {
                    return condition.run(machine) != 0 ? a.run(machine) : b.run(machine);
                }};
    }

    Node _MakeFloat(int depth) {
        if (depth <= 0) {
            return _Pick(3) == 0 ? _MakeLiteral(Kind::Float) : _MakeLoad(Kind::Float, depth);
        }
        using Word = std::uint32_t;
        switch (_Pick(12)) {
        case 0:
            return _MakeBinary(Kind::Float, "+", depth,
                               [](Word a, Word b) { return W(F(a) + F(b)); });
        case 1:
            return _MakeBinary(Kind::Float, "-", depth,
                               [](Word a, Word b) { return W(F(a) - F(b)); });
        case 2:
            return _MakeBinary(Kind::Float, "*", depth,
                               [](Word a, Word b) { return W(F(a) * F(b)); });
        case 3:
            return _MakeBinary(Kind::Float, "/", depth,
                               [](Word a, Word b) { return W(F(a) / F(b)); });
        case 4:
            return _MakeChoice(Kind::Float, depth);
        case 5: {
            Node a = _MakeFloat(depth - 1);
            return {"floor(" + a.text + ")",
                    [a](Machine& machine) { return W(std::floor(F(a.run(machine)))); }};
        }
        case 6: {
            Node a = _MakeInt(depth - 1);
            return {"float(" + a.text + ")",
                    [a](Machine& machine) { return W(static_cast<float>(I(a.run(machine)))); }};
        }
        case 7:
            return {"kl_HitDistance", [](Machine& machine) { return W(machine.input.distance); }};
        case 8:
            return _MakeCall(depth);
        case 9: {
            Node a = _MakeFloat(depth - 1);
            return {"(-" + a.text + ")",
                    [a](Machine& machine) { return a.run(machine) ^ 0x80000000u; }};
        }
        default:
            return _MakeLoad(Kind::Float, depth);
        }
    }

    Node _MakeInt(int depth) {
        if (depth <= 0) {
            return _Pick(3) == 0 ? _MakeLiteral(Kind::Int) : _MakeLoad(Kind::Int, depth);
        }
        using Word = std::uint32_t;
        switch (_Pick(17)) {
        case 0:
            return _MakeBinary(Kind::Int, "+", depth, [](Word a, Word b) { return a + b; });
        case 1:
            return _MakeBinary(Kind::Int, "-", depth, [](Word a, Word b) { return a - b; });
        case 2:
            return _MakeBinary(Kind::Int, "*", depth, [](Word a, Word b) { return a * b; });
        case 3:
            return _MakeBinary(Kind::Int, "/", depth,
                               [](Word a, Word b) { return W(Divide(I(a), I(b))); });
        case 4:
            return _MakeBinary(Kind::Int, "%", depth,
                               [](Word a, Word b) { return W(Remainder(I(a), I(b))); });
        case 5:
            return _MakeBinary(Kind::Int, "&", depth, [](Word a, Word b) { return a & b; });
        case 6:
            return _MakeBinary(Kind::Int, "|", depth, [](Word a, Word b) { return a | b; });
        case 7:
            return _MakeBinary(Kind::Int, "^", depth, [](Word a, Word b) { return a ^ b; });
        case 8:
            return _MakeBinary(Kind::Int, "<<", depth, ShiftLeft);
        case 9:
            return _MakeBinary(Kind::Int, ">>", depth, ShiftRight);
        case 10:
            return _MakeChoice(Kind::Int, depth);
        case 11: {
            Node a = _MakeFloat(depth - 1);
            return {"int(" + a.text + ")",
                    [a](Machine& machine) { return W(ToInt(F(a.run(machine)))); }};
        }
        case 12:
            return {"kl_RayDepth", [](Machine& machine) { return W(machine.input.depth); }};
        case 13:
            return _MakeIncrement();
        case 14: {
            Node a = _MakeInt(depth - 1);
            return {"(~" + a.text + ")", [a](Machine& machine) { return ~a.run(machine); }};
        }
        default:
            return _MakeLoad(Kind::Int, depth);
        }
    }

    Node _MakeIncrement() {
        const Name* found = _FindName(Kind::Int, false, true);
        if (found == nullptr) {
            return _MakeLiteral(Kind::Int);
        }
        Name name = *found;
        bool isPrefix = _Pick(2) == 0;
        bool isDecrement = _Pick(2) == 0;
        std::string sign = isDecrement ? "--" : "++";
        return {"(" + (isPrefix ? sign + name.text : name.text + sign) + ")",
                [name, isPrefix, isDecrement](Machine& machine) {
                    std::uint32_t& word = At(machine, name);
                    std::uint32_t old = word;
                    word = isDecrement ? old - 1u : old + 1u;
                    return isPrefix ? word : old;
                }};
    }

    template <class Compare>
    Node _MakeComparison(const char* sign, int depth, Compare compare) {
        Kind kind = _Pick(2) == 0 ? Kind::Float : Kind::Int;
        Node a = _Make(kind, depth - 1);
        Node b = _Make(kind, depth - 1);
        return {"(" + a.text + " " + sign + " " + b.text + ")",
                [a, b, kind, compare](Machine& machine) -> std::uint32_t {
                    std::uint32_t left = a.run(machine);
                    std::uint32_t right = b.run(machine);
                    return kind == Kind::Float ? compare(F(left), F(right))
                                               : compare(I(left), I(right));
                }};
    }

    Node _MakeBool(int depth) {
        int choice = _Pick(depth > 0 ? 9 : 6);
        switch (choice) {
        case 0:
            return _MakeComparison("<", depth, [](auto a, auto b) { return a < b; });
        case 1:
            return _MakeComparison("<=", depth, [](auto a, auto b) { return a <= b; });
        case 2:
            return _MakeComparison(">", depth, [](auto a, auto b) { return a > b; });
        case 3:
            return _MakeComparison(">=", depth, [](auto a, auto b) { return a >= b; });
        case 4:
            return _MakeComparison("==", depth, [](auto a, auto b) { return a == b; });
        case 5:
            return _MakeComparison("!=", depth, [](auto a, auto b) { return a != b; });
        case 6: {
            Node a = _MakeBool(depth - 1);
            return {"(!" + a.text + ")",
                    [a](Machine& machine) { return a.run(machine) != 0 ? 0u : 1u; }};
        }
        default: {
            bool isAnd = choice == 7;
            Node a = _MakeBool(depth - 1);
            Node b = _MakeBool(depth - 1);
            return {"(" + a.text + (isAnd ? " && " : " || ") + b.text + ")",
                    [a, b, isAnd](Machine& machine) {
                        bool left = a.run(machine) != 0;
                        return left == isAnd ? b.run(machine) : (left ? 1u : 0u);
                    }};
        }
        }
    }

    Node _MakeCall(int depth) {
        const Name* inoutName = _FindName(Kind::Float, false, true);
        const Name* outName = _FindName(Kind::Int, false, true);
        if (_functions.empty() || inoutName == nullptr || outName == nullptr) {
            return _MakeLoad(Kind::Float, depth);
        }
        std::shared_ptr<Function> function =
            _functions[static_cast<std::size_t>(_Pick(static_cast<int>(_functions.size())))];
        Node a = _MakeFloat(depth - 1);
        Node b = _MakeInt(depth - 1);
        Name c = *inoutName;
        Name d = *outName;
        return {function->name + "(" + a.text + ", " + b.text + ", " + c.text + ", " + d.text + ")",
                [function, a, b, c, d](Machine& machine) {
                    Frame frame;
                    frame.slots.resize(function->slotCount);
                    frame.slots[0] = a.run(machine);
                    frame.slots[1] = b.run(machine);
                    frame.slots[2] = At(machine, c);
                    machine.frames.push_back(frame);
                    machine.result = 0;
                    RunSteps(function->body, machine);
                    std::uint32_t result = machine.result;
                    frame = machine.frames.back();
                    machine.frames.pop_back();
                    At(machine, c) = frame.slots[2];
                    At(machine, d) = frame.slots[3];
                    return result;
                }};
    }

    void _MakeFunction(const std::string& name) {
        auto function = std::make_shared<Function>();
        function->name = name;
        std::size_t mark = _names.size();
        _slot = 0;
        _isFunction = true;
        const char* const names[] = {"x", "n", "y", "m"};
        for (int i = 0; i < 4; ++i) {
            Kind kind = i % 2 == 0 ? Kind::Float : Kind::Int;
            _names.push_back({names[i], kind, false, false, false, _slot++});
        }
        _MakeStatements(function->body, 4, 2);
        Node value = _MakeFloat(2);
        function->body.push_back({"return " + value.text + ";\n", [value](Machine& machine) {
                                      std::uint32_t word = value.run(machine);
                                      machine.result = word;
                                      return Flow::Return;
                                  }});
        function->slotCount = _slot + 1;
        _names.resize(mark);
        text += "float " + name + "(float x, int n, inout float y, out int m)\n{\n";
        for (const Step& step : function->body) {
            text += step.text;
        }
        text += "}\n";
        _functions.push_back(function);
    }

    // Statements.

    static Flow RunSteps(const std::vector<Step>& steps, Machine& machine) {
        for (const Step& step : steps) {
            Flow flow = step.run(machine);
            if (flow != Flow::Next) {
                return flow;
            }
        }
        return Flow::Next;
    }

    static std::string Join(const std::vector<Step>& steps) {
        std::string joined = "{\n";
        for (const Step& step : steps) {
            joined += step.text;
        }
        return joined + "}\n";
    }

    void _MakeStatements(std::vector<Step>& steps, int count, int depth) {
        for (int i = 0; i < count; ++i) {
            _MakeStatement(steps, depth);
        }
    }

    std::vector<Step> _MakeBlock(int depth) {
        std::size_t mark = _names.size();
        std::vector<Step> steps;
        _MakeStatements(steps, 1 + _Pick(3), depth);
        _names.resize(mark);
        return steps;
    }

    void _MakeStatement(std::vector<Step>& steps, int depth) {
        int choice = _Pick(depth > 0 ? 12 : 5);
        if (choice < 4) {
            steps.push_back(_MakeAssign());
        } else if (choice == 4) {
            _Declare(steps, "t" + std::to_string(_slot), _Pick(2) == 0 ? Kind::Float : Kind::Int,
                     false);
        } else if (choice < 8) {
            steps.push_back(_MakeIf(depth));
        } else if (choice < 11) {
            steps.push_back(_MakeLoop(depth, _Pick(3)));
        } else if (_loopDepth > 0 && _Pick(2) == 0) {
            bool isBreak = _Pick(2) == 0;
            Node condition = _MakeBool(1);
            steps.push_back(
                {"if (" + condition.text + ") " + (isBreak ? "break;\n" : "continue;\n"),
                 [condition, isBreak](Machine& machine) {
                     if (condition.run(machine) == 0) {
                         return Flow::Next;
                     }
                     return isBreak ? Flow::Break : Flow::Continue;
                 }});
        } else if (_isFunction) {
            Node condition = _MakeBool(1);
            Node value = _MakeFloat(1);
            steps.push_back({"if (" + condition.text + ") return " + value.text + ";\n",
                             [condition, value](Machine& machine) {
                                 if (condition.run(machine) == 0) {
                                     return Flow::Next;
                                 }
                                 std::uint32_t word = value.run(machine);
                                 machine.result = word;
                                 return Flow::Return;
                             }});
        } else {
            Node condition = _MakeBool(2);
            steps.push_back(
                {"if (" + condition.text + ") return;\n", [condition](Machine& machine) {
                     return condition.run(machine) != 0 ? Flow::Return : Flow::Next;
                 }});
        }
    }

    Step _MakeAssign() {
        Kind kind = _Pick(2) == 0 ? Kind::Float : Kind::Int;
        bool isArray = _Pick(3) == 0;
        const Name* found = _FindName(kind, isArray, true);
        if (found == nullptr) {
            isArray = false;
            found = _FindName(kind, false, true);
        }
        Name name = *found;
        bool isSum = _Pick(3) == 0;
        Node index = isArray ? _MakeIndex(1) : Node{"0", [](Machine&) { return 0u; }};
        Node value = _Make(kind, 3);
        std::string target = isArray ? name.text + "[" + index.text + "]" : name.text;
        return {target + (isSum ? " += " : " = ") + value.text + ";\n",
                [name, index, value, isSum, kind](Machine& machine) {
                    std::size_t element = _Clamp(index.run(machine));
                    std::uint32_t word = value.run(machine);
                    std::uint32_t& old = At(machine, name, element);
                    if (isSum) {
                        word = kind == Kind::Float ? W(F(old) + F(word)) : old + word;
                    }
                    old = word;
                    return Flow::Next;
                }};
    }

    Step _MakeIf(int depth) {
        Node condition = _MakeBool(2);
        std::vector<Step> whenTrue = _MakeBlock(depth - 1);
        std::vector<Step> whenFalse;
        std::string text_ = "if (" + condition.text + ")\n" + Join(whenTrue);
        if (_Pick(2) == 0) {
            whenFalse = _MakeBlock(depth - 1);
            text_ += "else\n" + Join(whenFalse);
        }
        return {text_, [condition, whenTrue, whenFalse](Machine& machine) {
                    return RunSteps(condition.run(machine) != 0 ? whenTrue : whenFalse, machine);
                }};
    }

    /// for, while and do, each of a few rounds by a counter that nothing else changes.
    Step _MakeLoop(int depth, int form) {
        std::size_t mark = _names.size();
        std::string counter = "n" + std::to_string(_slot);
        Name name{counter, Kind::Int, false, false, true, _slot++};
        _names.push_back(name);
        Node extra = _MakeBool(1);
        bool hasExtra = _Pick(2) == 0;
        std::int32_t rounds = 1 + _Pick(5);
        ++_loopDepth;
        std::vector<Step> body = _MakeBlock(depth - 1);
        --_loopDepth;
        _names.resize(mark);
        std::string test = "(" + counter + "++ < " + std::to_string(rounds) + ")" +
                           (hasExtra ? " && " + extra.text : "");
        std::string text_;
        if (form == 0) {
            text_ = "for (int " + counter + " = 0; " + test + ";)\n" + Join(body);
        } else if (form == 1) {
            text_ = "int " + counter + " = 0;\nwhile (" + test + ")\n" + Join(body);
        } else {
            text_ = "int " + counter + " = 0;\ndo\n" + Join(body) + "while (" + test + ");\n";
        }
        auto holds = [name, extra, hasExtra, rounds](Machine& machine) {
            std::int32_t old = I(At(machine, name)++);
            return old < rounds && (!hasExtra || extra.run(machine) != 0);
        };
        bool testsFirst = form != 2;
        return {"{\n" + text_ + "}\n", [name, holds, body, testsFirst](Machine& machine) {
                    At(machine, name) = 0;
                    if (testsFirst && !holds(machine)) {
                        return Flow::Next;
                    }
                    do {
                        Flow flow = RunSteps(body, machine);
                        if (flow == Flow::Break) {
                            break;
                        }
                        if (flow == Flow::Return) {
                            return flow;
                        }
                    } while (holds(machine));
                    return Flow::Next;
                }};
    }

    std::mt19937 _random;
    std::vector<Name> _names;
    std::vector<std::shared_ptr<Function>> _functions;
    std::size_t _slot = 0;
    int _loopDepth = 0;
    bool _isFunction = false;
};

} // namespace

struct RandomProgram::Parts {
    explicit Parts(std::uint32_t seed) : maker(seed) { maker.Make(); }
    Maker maker;
};

RandomProgram::RandomProgram(std::uint32_t seed) : _pParts(std::make_unique<Parts>(seed)) {}
RandomProgram::~RandomProgram() = default;

std::string RandomProgram::GetText() const {
    return _pParts->maker.text;
}

std::vector<float> RandomProgram::Run(const RandomProgramInput& input) const {
    FloatingPointScope scope;
    const Maker& maker = _pParts->maker;
    Machine machine;
    machine.input = input;
    machine.globals.slots.resize(maker.globalSlots);
    machine.frames.emplace_back();
    machine.frames.back().slots.resize(maker.mainSlots);
    for (const Step& step : maker.main) {
        if (step.run(machine) != Flow::Next) {
            break;
        }
    }
    return machine.output;
}

} // namespace Tolen::OpenKL::Testing
