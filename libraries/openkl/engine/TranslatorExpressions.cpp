#include "engine/Translator.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// Nodes of an expression that may be evaluated for nothing.
constexpr int kMaxCheapNodes = 24;

Operation GetOperation(BinaryOperator binary, bool isFloat) {
    switch (binary) {
    case kBinary_Add:
        return isFloat ? Operation::FAdd : Operation::IAdd;
    case kBinary_Subtract:
        return isFloat ? Operation::FSub : Operation::ISub;
    case kBinary_Multiply:
        return isFloat ? Operation::FMul : Operation::IMul;
    case kBinary_Divide:
        return isFloat ? Operation::FDiv : Operation::IDiv;
    case kBinary_Modulo:
        return Operation::IMod;
    case kBinary_ShiftLeft:
        return Operation::IShiftLeft;
    case kBinary_ShiftRight:
        return Operation::IShiftRight;
    case kBinary_BitAnd:
    case kBinary_LogicalAnd:
        return Operation::IAnd;
    case kBinary_BitXor:
    case kBinary_LogicalXor:
        return Operation::IXor;
    case kBinary_BitOr:
    case kBinary_LogicalOr:
        return Operation::IOr;
    case kBinary_Less:
    case kBinary_Greater:
        return isFloat ? Operation::FLess : Operation::ILess;
    case kBinary_LessEqual:
    case kBinary_GreaterEqual:
        return isFloat ? Operation::FLessEqual : Operation::ILessEqual;
    default:
        return Operation::Move;
    }
}

bool IsService(BuiltinFunction function) {
    switch (function) {
    case kFunction_Texture2D:
    case kFunction_TextureSize:
    case kFunction_SpawnRay:
    case kFunction_Accumulate:
    case kFunction_Occluded:
    case kFunction_TraceDistance:
    case kFunction_DiscardRay:
        return true;
    default:
        return false;
    }
}

} // namespace

/// Chains of operators grow to the left without limit, so they are followed in a loop.
Values Translator::_Evaluate(const Expression& expression) {
    Level level(*this);
    std::vector<const Expression*> chain;
    const Expression* innermost = &expression;
    while (true) {
        if (innermost->kind == kExpression_Binary) {
            chain.push_back(innermost);
            innermost = innermost->As<BinaryExpression>().left;
        } else if (innermost->kind == kExpression_Comma) {
            chain.push_back(innermost);
            innermost = innermost->As<CommaExpression>().left;
        } else if (innermost->kind == kExpression_Convert) {
            chain.push_back(innermost);
            innermost = innermost->As<ConvertExpression>().operand;
        } else {
            break;
        }
    }
    auto zeros = [](IrBuilder& builder, const Type& type) {
        return Values(static_cast<std::size_t>(type.CountScalars()), builder.Int(0));
    };
    if (_IsStopped()) {
        return zeros(_builder, expression.type);
    }
    Values values = _EvaluateUnchained(*innermost);
    while (!chain.empty()) {
        if (_IsStopped()) {
            return zeros(_builder, expression.type);
        }
        const Expression& outer = *chain.back();
        chain.pop_back();
        if (outer.kind == kExpression_Convert) {
            const Expression& operand = *outer.As<ConvertExpression>().operand;
            values = _math.Convert(operand.type.base, outer.type.base, values);
        } else if (outer.kind == kExpression_Comma) {
            values = _Evaluate(*outer.As<CommaExpression>().right);
        } else {
            const auto& binary = outer.As<BinaryExpression>();
            if (binary.operation == kBinary_LogicalAnd || binary.operation == kBinary_LogicalOr) {
                values = _EvaluateLogical(binary.operation, values[0], *binary.right);
            } else {
                Values right = _Evaluate(*binary.right);
                values = _Combine(binary.operation, binary.left->type, values, binary.right->type,
                                  right);
            }
        }
    }
    return values;
}

Values Translator::_EvaluateUnchained(const Expression& expression) {
    switch (expression.kind) {
    case kExpression_Literal:
        return _EvaluateLiteral(expression.As<LiteralExpression>());
    case kExpression_Variable:
    case kExpression_Swizzle:
    case kExpression_Index:
    case kExpression_Field:
        return _EvaluatePart(expression);
    case kExpression_BlockElement:
        return _EvaluateBlockElement(expression.As<BlockElementExpression>());
    case kExpression_Unary:
        return _EvaluateUnary(expression.As<UnaryExpression>());
    case kExpression_Assign:
        return _EvaluateAssign(expression.As<AssignExpression>());
    case kExpression_Increment:
        return _EvaluateIncrement(expression.As<IncrementExpression>());
    case kExpression_Conditional:
        return _EvaluateConditional(expression.As<ConditionalExpression>());
    case kExpression_Call: {
        const auto& call = expression.As<CallExpression>();
        const Function* definition = _stage.GetDefinition(call.function);
        return _Call(*definition, call.arguments);
    }
    case kExpression_BuiltinCall:
        return _EvaluateBuiltinCall(expression.As<BuiltinCallExpression>());
    case kExpression_Construct:
        return _EvaluateConstruct(expression.As<ConstructExpression>());
    case kExpression_Binary:
    case kExpression_Comma:
    case kExpression_Convert:
        break;
    }
    return _Evaluate(expression);
}

Values Translator::_EvaluateLiteral(const LiteralExpression& literal) {
    Values values;
    for (ScalarValue scalar : literal.values) {
        switch (literal.type.base) {
        case kBase_Float:
            values.push_back(_builder.Float(scalar.f));
            break;
        case kBase_Bool:
            values.push_back(_builder.Mask(scalar.i != 0));
            break;
        default:
            values.push_back(_builder.Int(scalar.i));
            break;
        }
    }
    return values;
}

Values Translator::_EvaluateUnary(const UnaryExpression& unary) {
    Values operand = _Evaluate(*unary.operand);
    if (unary.operation != kUnary_Negate) {
        return _math.Map(Operation::INot, operand);
    }
    bool isFloat = unary.type.base == kBase_Float;
    return _math.Map(isFloat ? Operation::FNeg : Operation::INeg, operand);
}

Values Translator::_Combine(BinaryOperator operation, const Type& leftType, const Values& left,
                            const Type& rightType, const Values& right) {
    switch (operation) {
    case kBinary_MatrixTimesMatrix:
        return _math.MatrixTimesMatrix(left, right, leftType.rows);
    case kBinary_MatrixTimesVector:
        return _math.MatrixTimesVector(left, right);
    case kBinary_VectorTimesMatrix:
        return _math.VectorTimesMatrix(left, right);
    case kBinary_Equal:
        return _Equals(leftType, left, right);
    case kBinary_NotEqual:
        return _math.Map(Operation::INot, _Equals(leftType, left, right));
    default:
        break;
    }
    Operation scalar = GetOperation(operation, rightType.base == kBase_Float);
    if (operation == kBinary_Greater || operation == kBinary_GreaterEqual) {
        return _math.Map(scalar, right, left);
    }
    return _math.Map(scalar, left, right);
}

Values Translator::_Equals(const Type& type, const Values& left, const Values& right) {
    std::vector<BaseType> bases = GetScalarBases(type);
    Values masks;
    for (std::size_t i = 0; i < left.size(); ++i) {
        masks.push_back(_math.Equal(bases[i], left[i], right[i]));
    }
    return {masks.empty() ? _builder.Mask(true) : _math.All(masks)};
}

Values Translator::_EvaluateLogical(BinaryOperator operation, ValueId left,
                                    const Expression& right) {
    bool isAnd = operation == kBinary_LogicalAnd;
    if (_limits.sharesCalls && _builder.IsConstant(left)) {
        bool isDecided = (_unit.ops[left].word != 0) != isAnd;
        return {isDecided ? left : _EvaluateScalar(right)};
    }
    if (_IsCheap(right)) {
        return {
            _builder.Do(isAnd ? Operation::IAnd : Operation::IOr, left, _EvaluateScalar(right))};
    }
    std::uint32_t result = _builder.AddVariables(1);
    _builder.StoreVariable(result, left);
    std::uint32_t index = _builder.AddIf(left);
    RegionId region = isAnd ? _unit.ifs[index].whenTrue : _unit.ifs[index].whenFalse;
    IrBuilder::Position position = _builder.Enter(region);
    _builder.StoreVariable(result, _EvaluateScalar(right));
    _builder.Return(position);
    return {_builder.LoadVariable(result)};
}

Values Translator::_EvaluateConditional(const ConditionalExpression& conditional) {
    ValueId condition = _EvaluateScalar(*conditional.condition);
    if (_limits.sharesCalls && _builder.IsConstant(condition)) {
        bool holds = _unit.ops[condition].word != 0;
        return _Evaluate(holds ? *conditional.whenTrue : *conditional.whenFalse);
    }
    auto words = static_cast<std::uint32_t>(conditional.type.CountScalars());
    if (words > 0 && _IsCheap(*conditional.whenTrue) && _IsCheap(*conditional.whenFalse)) {
        Values whenTrue = _Evaluate(*conditional.whenTrue);
        Values whenFalse = _Evaluate(*conditional.whenFalse);
        return _math.Map(Operation::Select, {condition}, whenTrue, whenFalse);
    }
    std::uint32_t first = _builder.AddVariables(words);
    for (std::uint32_t i = 0; i < words; ++i) {
        _builder.StoreVariable(first + i, _builder.Int(0));
    }
    std::uint32_t index = _builder.AddIf(condition);
    auto choose = [&](RegionId region, const Expression& chosen) {
        IrBuilder::Position position = _builder.Enter(region);
        Values values = _Evaluate(chosen);
        for (std::uint32_t i = 0; i < words; ++i) {
            _builder.StoreVariable(first + i, values[i]);
        }
        _builder.Return(position);
    };
    choose(_unit.ifs[index].whenTrue, *conditional.whenTrue);
    choose(_unit.ifs[index].whenFalse, *conditional.whenFalse);
    Values result;
    for (std::uint32_t i = 0; i < words; ++i) {
        result.push_back(_builder.LoadVariable(first + i));
    }
    return result;
}

Values Translator::_EvaluateAssign(const AssignExpression& assign) {
    Place target = _MakePlace(*assign.target);
    Values values = _Evaluate(*assign.value);
    if (assign.isCompound) {
        values = _Combine(assign.operation, assign.target->type, _access.Load(target),
                          assign.value->type, values);
    }
    // A scalar behind a compound operator counts for every component.
    if (values.size() == 1) {
        values.resize(static_cast<std::size_t>(assign.type.CountScalars()), values[0]);
    }
    _access.Store(target, values);
    return values;
}

Values Translator::_EvaluateIncrement(const IncrementExpression& increment) {
    Place target = _MakePlace(*increment.target);
    Values old = _access.Load(target);
    bool isFloat = increment.type.base == kBase_Float;
    BinaryOperator binary = increment.isDecrement ? kBinary_Subtract : kBinary_Add;
    ValueId one = isFloat ? _builder.Float(1.0f) : _builder.Int(1);
    Values changed = _math.Map(GetOperation(binary, isFloat), old, {one});
    _access.Store(target, changed);
    return increment.isPrefix ? changed : old;
}

Values Translator::_EvaluateConstruct(const ConstructExpression& construct) {
    std::vector<Values> arguments;
    Values flat;
    for (const Expression* argument : construct.arguments) {
        arguments.push_back(_Evaluate(*argument));
        flat.insert(flat.end(), arguments.back().begin(), arguments.back().end());
    }
    auto words = static_cast<std::size_t>(construct.type.CountScalars());
    std::size_t rows = construct.type.rows;
    switch (construct.form) {
    case kConstruct_Splat:
        return Values(words, flat[0]);
    case kConstruct_Diagonal: {
        Values values(words, _builder.Float(0.0f));
        for (std::size_t i = 0; i < rows; ++i) {
            values[i * rows + i] = flat[0];
        }
        return values;
    }
    case kConstruct_Resize: {
        std::size_t from = construct.arguments[0]->type.rows;
        Values values;
        for (std::size_t i = 0; i < words; ++i) {
            std::size_t column = i / rows;
            std::size_t row = i % rows;
            bool isInside = column < from && row < from;
            values.push_back(isInside ? flat[column * from + row]
                                      : _builder.Float(column == row ? 1.0f : 0.0f));
        }
        return values;
    }
    case kConstruct_Components:
    case kConstruct_Members:
        break;
    }
    flat.resize(words, flat.empty() ? _builder.Int(0) : flat.back());
    return flat;
}

Values Translator::_EvaluateBlockElement(const BlockElementExpression& element) {
    ValueId index = _EvaluateScalar(*element.index);
    const LinkedGlobal& global = _stage.globals[_stage.GetGlobal(element.block)];
    std::vector<BaseType> bases = GetScalarBases(global.type);
    Values values;
    for (std::uint32_t i = 0; i < bases.size(); ++i) {
        ValueId word = _builder.LoadBlock(static_cast<std::uint32_t>(global.index),
                                          static_cast<std::uint32_t>(bases.size()), i, index);
        values.push_back(bases[i] == kBase_Bool
                             ? _builder.Do(Operation::INotEqual, word, _builder.Int(0))
                             : word);
    }
    return values;
}

Values Translator::_EvaluateBuiltinCall(const BuiltinCallExpression& call) {
    if (IsService(call.function)) {
        return _CallService(call);
    }
    switch (call.function) {
    case kFunction_Random:
        return _CallRandom(false);
    case kFunction_Random2:
        return _CallRandom(true);
    case kFunction_Modf:
        return _CallModf(call);
    default:
        break;
    }
    std::vector<Values> arguments;
    for (const Expression* argument : call.arguments) {
        arguments.push_back(_Evaluate(*argument));
    }
    if (call.function == kFunction_Mix && call.arguments[2]->type.base == kBase_Bool) {
        return _math.Map(Operation::Select, arguments[2], arguments[1], arguments[0]);
    }
    Values values =
        _math.CallFunction(call.function, call.arguments[0]->type.base, call.type, arguments);
    // Where every argument was a scalar beside a vector result.
    if (values.size() == 1) {
        values.resize(static_cast<std::size_t>(call.type.CountScalars()), values[0]);
    }
    return values;
}

Values Translator::_EvaluatePart(const Expression& expression) {
    return _access.Load(_MakePlace(expression));
}

const WordStore& Translator::_GetStore(const Variable& variable) {
    if (variable.storage == kStorage_Builtin || variable.builtin != kVariable_None) {
        return _builtins[variable.builtin];
    }
    if (variable.storage == kStorage_Local || variable.storage == kStorage_Parameter) {
        return _locals[&variable];
    }
    return _globals[_stage.GetGlobal(&variable)];
}

Place Translator::_MakeTemporary(const Type& type, Values values) {
    _temporaries.emplace_back();
    _temporaries.back().values = std::move(values);
    Place place;
    place.pStore = &_temporaries.back();
    place.type = type;
    return place;
}

/// The place of a variable or of a part of anything; values that are no variable's become a store
/// of their own.
Place Translator::_MakePlace(const Expression& expression) {
    Level level(*this);
    if (_IsStopped()) {
        auto words = static_cast<std::size_t>(expression.type.CountScalars());
        return _MakeTemporary(expression.type, Values(words, _builder.Int(0)));
    }
    Place place;
    switch (expression.kind) {
    case kExpression_Variable:
        place.pStore = &_GetStore(*expression.As<VariableExpression>().variable);
        place.type = expression.type;
        return place;
    case kExpression_Swizzle: {
        const auto& swizzle = expression.As<SwizzleExpression>();
        place = _MakePlace(*swizzle.object);
        place.isSwizzled = true;
        place.swizzle.assign(swizzle.components.begin(),
                             swizzle.components.begin() + swizzle.type.rows);
        return place;
    }
    case kExpression_Field: {
        const auto& field = expression.As<FieldExpression>();
        place = _MakePlace(*field.object);
        const StructField& member =
            place.type.structure->fields[static_cast<std::size_t>(field.field)];
        place.offset += static_cast<std::uint32_t>(member.offset);
        place.type = member.type;
        return place;
    }
    case kExpression_Index:
        return _MakeIndexedPlace(expression.As<IndexExpression>());
    default:
        return _MakeTemporary(expression.type, _Evaluate(expression));
    }
}

Place Translator::_MakeIndexedPlace(const IndexExpression& subscript) {
    Place place = _MakePlace(*subscript.object);
    ValueId index = _EvaluateScalar(*subscript.index);
    bool isKnown = _unit.ops[index].kind == IrKind::Constant;
    auto known = static_cast<std::int32_t>(_unit.ops[index].word);
    auto count = subscript.object->type.GetElementCount();
    auto element = static_cast<std::uint32_t>(std::max(0, std::min(known, count - 1)));
    if (place.isSwizzled) {
        // The components stand where the swizzle says.
        if (isKnown) {
            element = place.swizzle[element];
        } else {
            ValueId component = _builder.Int(place.swizzle[0]);
            for (std::int32_t i = 1; i < count; ++i) {
                ValueId isFurther = _builder.Do(Operation::ILessEqual, _builder.Int(i), index);
                ValueId other = _builder.Int(place.swizzle[static_cast<std::size_t>(i)]);
                component = _builder.Do(Operation::Select, isFurther, other, component);
            }
            index = component;
        }
        count = place.type.rows;
        place.isSwizzled = false;
        place.swizzle.clear();
    }
    place.type = subscript.type;
    auto stride = static_cast<std::uint32_t>(subscript.type.CountScalars());
    if (isKnown) {
        place.offset += element * stride;
    } else {
        place.terms.push_back({index, static_cast<std::uint32_t>(count), stride});
    }
    return place;
}

/// Looks at no more than a handful of nodes, so chains of any length are no danger.
bool Translator::_IsCheap(const Expression& expression) {
    std::vector<const Expression*> open = {&expression};
    auto add = [&](std::span<const Expression* const> expressions) {
        open.insert(open.end(), expressions.begin(), expressions.end());
    };
    for (int nodes = 0; !open.empty(); ++nodes) {
        if (nodes == kMaxCheapNodes) {
            return false;
        }
        const Expression* next = open.back();
        open.pop_back();
        switch (next->kind) {
        case kExpression_Literal:
        case kExpression_Variable:
            break;
        case kExpression_Swizzle:
            open.push_back(next->As<SwizzleExpression>().object);
            break;
        case kExpression_Index:
            open.push_back(next->As<IndexExpression>().object);
            open.push_back(next->As<IndexExpression>().index);
            break;
        case kExpression_Field:
            open.push_back(next->As<FieldExpression>().object);
            break;
        case kExpression_BlockElement:
            open.push_back(next->As<BlockElementExpression>().index);
            break;
        case kExpression_Unary:
            open.push_back(next->As<UnaryExpression>().operand);
            break;
        case kExpression_Binary:
            open.push_back(next->As<BinaryExpression>().left);
            open.push_back(next->As<BinaryExpression>().right);
            break;
        case kExpression_Conditional:
            open.push_back(next->As<ConditionalExpression>().condition);
            open.push_back(next->As<ConditionalExpression>().whenTrue);
            open.push_back(next->As<ConditionalExpression>().whenFalse);
            break;
        case kExpression_Convert:
            open.push_back(next->As<ConvertExpression>().operand);
            break;
        case kExpression_Construct:
            add(next->As<ConstructExpression>().arguments);
            break;
        case kExpression_BuiltinCall: {
            const auto& call = next->As<BuiltinCallExpression>();
            if (IsService(call.function) || call.function == kFunction_Random ||
                call.function == kFunction_Random2 || call.function == kFunction_Modf) {
                return false;
            }
            add(call.arguments);
            break;
        }
        case kExpression_Assign:
        case kExpression_Increment:
        case kExpression_Comma:
        case kExpression_Call:
            return false;
        }
    }
    return true;
}

} // namespace Tolen::OpenKL
