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
    for (const IfBranch& branch : choice.branches) {
        ValueId condition = _EvaluateScalar(*branch.condition);
        std::uint32_t index = _builder.AddIf(condition);
        IrBuilder::Position position = _builder.Enter(_unit.ifs[index].whenTrue);
        _TranslateStatement(*branch.body);
        bool endsReachable = _builder.IsReachable();
        _builder.Return(position);
        open.push_back({index, position, endsReachable});
        _builder.Enter(_unit.ifs[index].whenFalse);
    }
    if (choice.otherwise != nullptr) {
        _TranslateStatement(*choice.otherwise);
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
    if (statement.value != nullptr) {
        Values values = _Evaluate(*statement.value);
        for (std::uint32_t i = 0; i < values.size(); ++i) {
            _builder.StoreVariable(_frames.back().firstResult + i, values[i]);
        }
    }
    _builder.AddExit(NodeKind::Leave, _frames.back().block);
}

Values Translator::_Inline(const Function& function,
                           const std::vector<const Expression*>& arguments) {
    std::vector<std::pair<const Variable*, Place>> outputs;
    _BindParameters(function, arguments, outputs);

    auto resultWords = static_cast<std::uint32_t>(function.returnType.CountScalars());
    Frame frame;
    frame.firstResult = _builder.AddVariables(resultWords);
    for (std::uint32_t i = 0; i < resultWords; ++i) {
        _builder.StoreVariable(frame.firstResult + i, _builder.Int(0));
    }
    auto text = _textOf.find(&function);
    frame.text = text == _textOf.end() ? 0 : text->second;
    frame.block = _builder.AddBlock();
    _frames.push_back(frame);
    std::vector<std::uint32_t> loops = std::move(_loops);
    _loops.clear();

    RegionId region = _unit.blocks[frame.block].region;
    IrBuilder::Position position = _builder.Enter(region);
    for (const Statement* statement : function.body->statements) {
        _TranslateStatement(*statement);
    }
    _builder.Return(position);
    _builder.DropTailExits(region, NodeKind::Leave, frame.block);
    if (position.isReachable && _unit.blocks[frame.block].leaveCount == 0) {
        _builder.DissolveBlock(frame.block);
    }
    _loops = std::move(loops);
    _frames.pop_back();

    Values result;
    for (std::uint32_t i = 0; i < resultWords; ++i) {
        result.push_back(_builder.LoadVariable(frame.firstResult + i));
    }
    for (const auto& [parameter, target] : outputs) {
        Place source;
        source.pStore = &_locals.at(parameter);
        source.type = parameter->type;
        _access.Store(target, _access.Load(source));
    }
    return result;
}

/// Arguments are evaluated and copied in from left to right.
void Translator::_BindParameters(const Function& function,
                                 const std::vector<const Expression*>& arguments,
                                 std::vector<std::pair<const Variable*, Place>>& outputs) {
    std::vector<WordStore> stores;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Variable* parameter = function.parameters[i];
        Values values;
        if (parameter->direction == kDirection_In) {
            values = _Evaluate(*arguments[i]);
        } else {
            outputs.emplace_back(parameter, _MakePlace(*arguments[i]));
            if (parameter->direction == kDirection_InOut) {
                values = _access.Load(outputs.back().second);
            }
        }
        bool isDynamic = _usage.dynamicallyIndexed.contains(parameter);
        WordStore store;
        if (!isDynamic && !_usage.written.contains(parameter) &&
            parameter->direction == kDirection_In) {
            store.values = std::move(values);
        } else {
            store = _MakeStore(parameter->type, isDynamic);
            if (parameter->direction == kDirection_Out) {
                _FillWithZeros(store, parameter->type);
            } else {
                _Fill(store, parameter->type, values);
            }
        }
        stores.push_back(std::move(store));
    }
    for (std::size_t i = 0; i < stores.size(); ++i) {
        _locals[function.parameters[i]] = std::move(stores[i]);
    }
}

} // namespace Tolen::OpenKL
