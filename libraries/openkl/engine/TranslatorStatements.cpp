#include "engine/Translator.h"

namespace Tolen::OpenKL {

namespace {

/// Branches of one if statement that stand inside of one another.
constexpr std::size_t kMaxNestedBranches = 16;

/// Depth of regions to which what follows a return is put into the other branch.
constexpr int kMaxNestedReturns = 64;

} // namespace

void Translator::_TranslateStatement(const Statement& statement) {
    if (_IsStopped() || !_builder.IsReachable()) {
        return;
    }
    Level level(*this);
    switch (statement.kind) {
    case kStatement_Block:
        for (const Statement* child : statement.As<BlockStatement>().statements) {
            _TranslateStatement(*child);
        }
        break;
    case kStatement_Declaration:
        _TranslateDeclaration(statement.As<DeclarationStatement>());
        break;
    case kStatement_Expression:
        _Evaluate(*statement.As<ExpressionStatement>().expression);
        break;
    case kStatement_If:
        _TranslateIf(statement.As<IfStatement>());
        break;
    case kStatement_Loop:
        _TranslateLoop(statement.As<LoopStatement>());
        break;
    case kStatement_Return:
        _TranslateReturn(statement.As<ReturnStatement>());
        break;
    case kStatement_Break:
        _builder.AddExit(NodeKind::Break, _loops.back());
        break;
    case kStatement_Continue:
        _builder.AddExit(NodeKind::Continue, _loops.back());
        break;
    }
}

void Translator::_TranslateDeclaration(const DeclarationStatement& declaration) {
    const Variable* variable = declaration.variable;
    // The initialiser cannot see the variable.
    Values values;
    if (declaration.initializer != nullptr) {
        values = _Evaluate(*declaration.initializer);
    }
    WordStore store = _MakeStore(variable->type, _usage.dynamicallyIndexed.contains(variable));
    if (declaration.initializer != nullptr) {
        _Fill(store, variable->type, values);
    } else {
        _FillWithZeros(store, variable->type);
    }
    _locals[variable] = std::move(store);
}

/// Each further `else if` stands in the `else` of the one ahead of it.
void Translator::_TranslateIf(const IfStatement& choice) {
    if (choice.branches.size() > kMaxNestedBranches) {
        _TranslateLongIf(choice);
        return;
    }
    struct Open {
        std::uint32_t index;
        IrBuilder::Position position;
        bool endsReachable; ///< the branch that holds
    };
    std::vector<Open> open;
    const Statement* otherwise = choice.otherwise;
    for (const IfBranch& branch : choice.branches) {
        ValueId condition = _EvaluateScalar(*branch.condition);
        if (_limits.sharesCalls && _builder.IsConstant(condition)) {
            if (_unit.ops[condition].word == 0) {
                continue;
            }
            _TranslateStatement(*branch.body);
            otherwise = nullptr;
            break;
        }
        std::uint32_t index = _builder.AddIf(condition);
        IrBuilder::Position position = _builder.Enter(_unit.ifs[index].whenTrue);
        _TranslateStatement(*branch.body);
        bool endsReachable = _builder.IsReachable();
        _builder.Return(position);
        open.push_back({index, position, endsReachable});
        _builder.Enter(_unit.ifs[index].whenFalse);
    }
    if (otherwise != nullptr) {
        _TranslateStatement(*otherwise);
    }
    while (!open.empty()) {
        Open last = open.back();
        open.pop_back();
        bool otherwiseReachable = _builder.IsReachable();
        _builder.Return(last.position);
        _builder.SetReachable(last.position.isReachable &&
                              (last.endsReachable || otherwiseReachable));
        // Behind a branch that returns or goes on with the loop, what follows belongs to the other.
        if (open.empty() && choice.branches.size() == 1 && choice.otherwise == nullptr &&
            !last.endsReachable && _builder.IsReachable() && _EndsEarly(last.index) &&
            _builder.GetDepth() < kMaxNestedReturns) {
            _builder.ContinueIn(_unit.ifs[last.index].whenFalse);
        }
    }
}

bool Translator::_EndsEarly(std::uint32_t index) const {
    const std::vector<IrNode>& nodes = _unit.regions[_unit.ifs[index].whenTrue].nodes;
    return !nodes.empty() &&
           (nodes.back().kind == NodeKind::Leave || nodes.back().kind == NodeKind::Continue);
}

/// Chains of any length, without nesting: whoever has run a branch leaves the block.
void Translator::_TranslateLongIf(const IfStatement& choice) {
    std::uint32_t block = _builder.AddBlock();
    IrBuilder::Position outer = _builder.Enter(_unit.blocks[block].region);
    for (const IfBranch& branch : choice.branches) {
        ValueId condition = _EvaluateScalar(*branch.condition);
        std::uint32_t index = _builder.AddIf(condition);
        IrBuilder::Position position = _builder.Enter(_unit.ifs[index].whenTrue);
        _TranslateStatement(*branch.body);
        _builder.AddExit(NodeKind::Leave, block);
        _builder.Return(position);
    }
    if (choice.otherwise != nullptr) {
        _TranslateStatement(*choice.otherwise);
    }
    _builder.Return(outer);
}

void Translator::_TranslateLoop(const LoopStatement& loop) {
    if (loop.init != nullptr) {
        _TranslateStatement(*loop.init);
    }
    std::uint32_t index = _builder.AddLoop(loop.testsFirst, _frames.back().text, loop.line);
    if (loop.condition != nullptr) {
        IrBuilder::Position position = _builder.Enter(_unit.loops[index].test);
        ValueId condition = _EvaluateScalar(*loop.condition);
        _builder.Return(position);
        _unit.loops[index].condition = condition;
    }
    _loops.push_back(index);
    RegionId body = _unit.loops[index].body;
    IrBuilder::Position position = _builder.Enter(body);
    _TranslateStatement(*loop.body);
    _builder.Return(position);
    _builder.DropTailExits(body, NodeKind::Continue, index);
    _loops.pop_back();
    if (loop.increment != nullptr) {
        position = _builder.Enter(_unit.loops[index].step);
        _Evaluate(*loop.increment);
        _builder.Return(position);
    }
}

void Translator::_TranslateReturn(const ReturnStatement& statement) {
    Values values;
    if (statement.value != nullptr) {
        values = _Evaluate(*statement.value);
    }
    Frame& frame = _frames.back();
    if (frame.block == kNone) {
        frame.result = std::move(values);
        return;
    }
    for (std::uint32_t i = 0; i < values.size(); ++i) {
        _builder.StoreVariable(frame.firstResult + i, values[i]);
    }
    _builder.AddExit(NodeKind::Leave, frame.block);
}

} // namespace Tolen::OpenKL
