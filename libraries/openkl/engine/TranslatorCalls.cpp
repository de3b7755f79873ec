#include "engine/Translator.h"

#include <utility>

namespace Tolen::OpenKL {

namespace {

/// Whether a return statement stands anywhere in @p statements.
bool HasReturn(std::span<const Statement* const> statements) {
    std::vector<const Statement*> open(statements.begin(), statements.end());
    auto add = [&](const Statement* statement) {
        if (statement != nullptr) {
            open.push_back(statement);
        }
    };
    while (!open.empty()) {
        const Statement* statement = open.back();
        open.pop_back();
        switch (statement->kind) {
        case kStatement_Return:
            return true;
        case kStatement_Block:
            for (const Statement* child : statement->As<BlockStatement>().statements) {
                add(child);
            }
            break;
        case kStatement_If:
            for (const IfBranch& branch : statement->As<IfStatement>().branches) {
                add(branch.body);
            }
            add(statement->As<IfStatement>().otherwise);
            break;
        case kStatement_Loop:
            add(statement->As<LoopStatement>().body);
            break;
        default:
            break;
        }
    }
    return false;
}

} // namespace

bool Translator::_ReturnsAtEnd(const Function& function) {
    auto [entry, isNew] = _returnsAtEnd.try_emplace(&function, true);
    if (isNew) {
        std::span<const Statement* const> statements = function.body->statements;
        if (!statements.empty() && statements.back()->kind == kStatement_Return) {
            statements = statements.first(statements.size() - 1);
        }
        entry->second = !HasReturn(statements);
    }
    return entry->second;
}

Values Translator::_Call(const Function& function, std::span<const Expression* const> arguments) {
    std::vector<Place> targets;
    std::vector<Values> values = _EvaluateArguments(function, arguments, targets);
    auto store = [&](const CallMemory::Call& call) {
        for (std::size_t i = 0; i < targets.size(); ++i) {
            _access.Store(targets[i], call.outputs[i]);
        }
        return call.result;
    };
    if (!_limits.sharesCalls) {
        return store(_Inline(function, std::move(values)));
    }
    CallMemory::Key key{&function, {}};
    for (const Values& argument : values) {
        key.arguments.insert(key.arguments.end(), argument.begin(), argument.end());
    }
    if (const CallMemory::Call* pCall = _memory.Find(key)) {
        // Storing may end what is remembered.
        return store(CallMemory::Call(*pCall));
    }
    _memory.Open();
    CallMemory::Call call = _Inline(function, std::move(values));
    _memory.Close(std::move(key), call);
    return store(call);
}

std::vector<Values> Translator::_EvaluateArguments(const Function& function,
                                                   std::span<const Expression* const> arguments,
                                                   std::vector<Place>& targets) {
    std::vector<Values> values(arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        Direction direction = function.parameters[i]->direction;
        if (direction == kDirection_In) {
            values[i] = _Evaluate(*arguments[i]);
            continue;
        }
        targets.push_back(_MakePlace(*arguments[i]));
        if (direction == kDirection_InOut) {
            values[i] = _access.Load(targets.back());
        }
    }
    return values;
}

CallMemory::Call Translator::_Inline(const Function& function, std::vector<Values> arguments) {
    _BindParameters(function, std::move(arguments));
    Frame frame;
    frame.pFunction = &function;
    auto text = _textOf.find(&function);
    frame.text = text == _textOf.end() ? 0 : text->second;
    _frames.push_back(std::move(frame));
    std::vector<std::uint32_t> loops = std::exchange(_loops, {});
    if (_limits.sharesCalls && _ReturnsAtEnd(function)) {
        _TranslateStraightBody(function);
    } else {
        _TranslateBody(function);
    }
    _loops = std::move(loops);
    CallMemory::Call call;
    call.result = std::move(_frames.back().result);
    _frames.pop_back();
    for (const Variable* parameter : function.parameters) {
        if (parameter->direction != kDirection_In) {
            Place source;
            source.pStore = &_locals.at(parameter);
            source.type = parameter->type;
            call.outputs.push_back(_access.Load(source));
        }
    }
    return call;
}

void Translator::_TranslateStraightBody(const Function& function) {
    for (const Statement* statement : function.body->statements) {
        _TranslateStatement(*statement);
    }
    // Where the end is not reached.
    auto words = static_cast<std::size_t>(function.returnType.CountScalars());
    _frames.back().result.resize(words, _builder.Int(0));
}

void Translator::_TranslateBody(const Function& function) {
    auto words = static_cast<std::uint32_t>(function.returnType.CountScalars());
    std::uint32_t firstResult = _builder.AddVariables(words);
    for (std::uint32_t i = 0; i < words; ++i) {
        _builder.StoreVariable(firstResult + i, _builder.Int(0));
    }
    std::uint32_t block = _builder.AddBlock();
    _frames.back().block = block;
    _frames.back().firstResult = firstResult;

    RegionId region = _unit.blocks[block].region;
    IrBuilder::Position position = _builder.Enter(region);
    for (const Statement* statement : function.body->statements) {
        _TranslateStatement(*statement);
    }
    _builder.Return(position);
    _builder.DropTailExits(region, NodeKind::Leave, block);
    if (position.isReachable && _unit.blocks[block].leaveCount == 0) {
        _builder.DissolveBlock(block);
    }
    for (std::uint32_t i = 0; i < words; ++i) {
        _frames.back().result.push_back(_builder.LoadVariable(firstResult + i));
    }
}

void Translator::_BindParameters(const Function& function, std::vector<Values> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Variable* parameter = function.parameters[i];
        bool isDynamic = _usage.dynamicallyIndexed.contains(parameter);
        WordStore store;
        if (!isDynamic && !_usage.written.contains(parameter) &&
            parameter->direction == kDirection_In) {
            store.values = std::move(arguments[i]);
        } else {
            store = _MakeStore(parameter->type, isDynamic);
            if (parameter->direction == kDirection_Out) {
                _FillWithZeros(store, parameter->type);
            } else {
                _Fill(store, parameter->type, arguments[i]);
            }
        }
        _locals[parameter] = std::move(store);
    }
}

} // namespace Tolen::OpenKL
