#include "compiler/AccessChecker.h"

#include "compiler/BuiltinTable.h"
#include "compiler/CheckContext.h"
#include "compiler/OverloadChooser.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// The uniform block that an expression stands for as a whole or by its array; null otherwise.
Variable* FindBlock(const Expression* expression) {
    if (expression->kind == kExpression_Field) {
        expression = expression->As<FieldExpression>().object;
    }
    if (expression->kind != kExpression_Variable) {
        return nullptr;
    }
    Variable* variable = expression->As<VariableExpression>().variable;
    return variable->storage == kStorage_UniformBlock ? variable : nullptr;
}

} // namespace

std::string_view StorageToString(Storage storage) {
    switch (storage) {
    case kStorage_Global:
        return "a global";
    case kStorage_Const:
        return "a constant";
    case kStorage_Static:
        return "a static variable";
    case kStorage_Uniform:
    case kStorage_MutableUniform:
        return "a uniform";
    case kStorage_UniformBlock:
        return "a uniform block";
    case kStorage_Attribute:
        return "an attribute";
    case kStorage_Varying:
        return "a varying";
    case kStorage_RayAttribute:
        return "a ray attribute";
    case kStorage_Local:
        return "a local variable";
    case kStorage_Parameter:
        return "a parameter";
    case kStorage_Builtin:
        return "a built-in variable";
    }
    return {};
}

Variable* FindRootVariable(const Expression* target) {
    while (true) {
        switch (target->kind) {
        case kExpression_Variable:
            return target->As<VariableExpression>().variable;
        case kExpression_Swizzle:
            target = target->As<SwizzleExpression>().object;
            break;
        case kExpression_Index:
            target = target->As<IndexExpression>().object;
            break;
        case kExpression_Field:
            target = target->As<FieldExpression>().object;
            break;
        default:
            return nullptr;
        }
    }
}

const Expression* AccessChecker::Name(const Token& name) {
    Variable* variable = _context.symbols.FindVariable(name.text);
    if (variable == nullptr) {
        return _BuiltinVariable(name);
    }
    if (variable->type.IsVoid()) {
        return nullptr; // its declaration was refused
    }
    if (variable->constant != nullptr) {
        return _context.nodes.CopyLiteral(name.line, *variable->constant);
    }
    ++variable->reads;
    return _context.nodes.MakeVariable(name.line, variable);
}

const Expression* AccessChecker::_BuiltinVariable(const Token& name) {
    const BuiltinVariable builtin = FindBuiltinVariable(name.text);
    if (builtin == kVariable_None) {
        if (_context.symbols.MarkUnknown(name.text)) {
            _context.diagnostics.Error(name.line, Quote(name.text) + " is not declared");
        }
        return nullptr;
    }
    if (!IsAvailable(builtin, _context.stage)) {
        if (_context.symbols.MarkUnknown(name.text)) {
            _context.diagnostics.Error(name.line,
                                       Quote(name.text) + " belongs to " + GetStages(builtin) +
                                           " programs and cannot be used in a " +
                                           std::string(StageToString(_context.stage)) + " program");
        }
        return nullptr;
    }
    Variable*& variable = _context.builtins[builtin];
    if (variable == nullptr) {
        variable = _context.arena.New<Variable>();
        variable->name = BuiltinVariableToString(builtin);
        variable->type = GetBuiltinVariableType(builtin, _context.stage);
        variable->storage = kStorage_Builtin;
        variable->builtin = builtin;
    }
    ++variable->reads;
    return _context.nodes.MakeVariable(name.line, variable);
}

const Expression* AccessChecker::Member(const Expression* object, const Token& name) {
    if (object == nullptr) {
        return nullptr;
    }
    if (const Variable* block = FindBlock(object)) {
        if (object->kind == kExpression_Variable && name.text == block->blockMember) {
            return _context.arena.New<FieldExpression>(block->type, name.line, object, 0);
        }
        _context.diagnostics.Error(name.line, "uniform block " + Quote(block->name) + " has no " +
                                                  Quote(name.text) + " here, only the array " +
                                                  Quote(block->blockMember));
        _context.diagnostics.Note(block->line, Quote(block->name) + " is declared here");
        return nullptr;
    }
    if (object->type.IsStruct()) {
        return _Field(object, name);
    }
    if (object->type.IsVector()) {
        return _Swizzle(object, name);
    }
    _context.diagnostics.Error(name.line,
                               object->type.ToString() + " has no member " + Quote(name.text));
    return nullptr;
}

const Expression* AccessChecker::_Field(const Expression* object, const Token& name) {
    const StructType& structure = *object->type.structure;
    const int field = structure.FindField(name.text);
    if (field < 0) {
        _context.diagnostics.Error(name.line, "struct " + Quote(structure.name) + " has no field " +
                                                  Quote(name.text));
        _context.diagnostics.Note(structure.line, Quote(structure.name) + " is declared here");
        return nullptr;
    }
    return _context.nodes.MakeField(name.line, object, field);
}

const Expression* AccessChecker::_Swizzle(const Expression* object, const Token& name) {
    static constexpr std::string_view kSets[] = {"xyzw", "rgba", "stpq"};
    const std::string_view names = name.text;
    const int rows = object->type.rows;
    const auto refuse = [&](const std::string& why) {
        _context.diagnostics.Error(name.line, Quote(names) + " selects nothing of " +
                                                  object->type.ToString() + ": " + why);
        return nullptr;
    };
    if (names.size() > 4) {
        return refuse("at most 4 components can be named");
    }
    std::array<std::uint8_t, 4> components{};
    const auto* set = std::find_if(std::begin(kSets), std::end(kSets), [&](std::string_view s) {
        return names.find_first_not_of(s) == std::string_view::npos;
    });
    if (set == std::end(kSets)) {
        return refuse("components are named by letters of xyzw, of rgba or of stpq");
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        components[i] = static_cast<std::uint8_t>(set->find(names[i]));
        if (components[i] >= rows) {
            return refuse("it has " + std::to_string(rows) + " components");
        }
    }
    const Type type = MakeVector(object->type.base, static_cast<int>(names.size()));
    return _context.nodes.MakeSwizzle(type, name.line, object, components);
}

const Expression* AccessChecker::Index(const Expression* object, const Expression* index,
                                       int line) {
    if (object == nullptr || index == nullptr) {
        return nullptr;
    }
    if (index->type != kInt) {
        _context.diagnostics.Error(index->line,
                                   "a subscript must be an int, found " + index->type.ToString());
        return nullptr;
    }
    if (Variable* block = FindBlock(object)) {
        return object->kind == kExpression_Field
                   ? _context.nodes.MakeBlockElement(line, block, index)
                   : Complete(object);
    }
    const int count = object->type.GetElementCount();
    if (count == 0) {
        _context.diagnostics.Error(line, object->type.ToString() + " has no elements");
        return nullptr;
    }
    if (!_CheckIndex(index, count, object->type)) {
        return nullptr;
    }
    return _context.nodes.MakeIndex(line, object, index);
}

bool AccessChecker::_CheckIndex(const Expression* index, int count, const Type& type) {
    if (index->kind != kExpression_Literal) {
        return true;
    }
    const std::int32_t value = index->As<LiteralExpression>().values[0].i;
    if (value >= 0 && value < count) {
        return true;
    }
    _context.diagnostics.Error(
        index->line, "subscript " + std::to_string(value) + " is outside of " + type.ToString() +
                         ", whose subscripts go from 0 to " + std::to_string(count - 1));
    return false;
}

const Expression* AccessChecker::Length(const Expression* object, int line) {
    if (object == nullptr) {
        return nullptr;
    }
    if (FindBlock(object) != nullptr) {
        return Complete(object);
    }
    const int count = object->type.GetElementCount();
    if (count == 0) {
        _context.diagnostics.Error(line, object->type.ToString() + " has no length");
        return nullptr;
    }
    return _context.nodes.MakeInt(line, count);
}

const Expression* AccessChecker::Complete(const Expression* operand) {
    if (operand == nullptr) {
        return nullptr;
    }
    const Variable* block = FindBlock(operand);
    if (block == nullptr) {
        return operand;
    }
    _context.diagnostics.Error(
        operand->line,
        "uniform block " + Quote(block->name) + " is no value; read " +
            Quote(std::string(block->name) + "." + std::string(block->blockMember) + "[i]"));
    return nullptr;
}

bool AccessChecker::Write(const Expression* target, bool readsToo, std::string_view action) {
    for (const Expression* part = target; part->kind == kExpression_Swizzle;
         part = part->As<SwizzleExpression>().object) {
        const auto& swizzle = part->As<SwizzleExpression>();
        for (std::size_t i = 0; i < swizzle.type.rows; ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (swizzle.components[i] == swizzle.components[j]) {
                    return _RefuseWrite(target->line, action,
                                        "a swizzle that names a component twice");
                }
            }
        }
    }
    Variable* variable = FindRootVariable(target);
    if (variable == nullptr) {
        return _RefuseWrite(target->line, action,
                            target->kind == kExpression_BlockElement
                                ? "an element of uniform block " +
                                      Quote(target->As<BlockElementExpression>().block->name)
                                : "a value that is not a variable or a part of one");
    }
    if (!_CheckWritable(*variable, target->line, action)) {
        return false;
    }
    variable->isWritten = true;
    variable->reads -= readsToo ? 0 : 1;
    return true;
}

bool AccessChecker::_RefuseWrite(int line, std::string_view action, const std::string& what) {
    _context.diagnostics.Error(line, "cannot " + std::string(action) + " " + what);
    return false;
}

bool AccessChecker::_CheckWritable(const Variable& variable, int line, std::string_view action) {
    bool isWritable = true;
    switch (variable.storage) {
    case kStorage_Uniform:
    case kStorage_MutableUniform:
    case kStorage_UniformBlock:
    case kStorage_Attribute:
        isWritable = false;
        break;
    case kStorage_Varying:
        isWritable = _context.stage == kStage_Vertex;
        break;
    case kStorage_Builtin:
        isWritable = IsWritable(variable.builtin);
        break;
    case kStorage_Const:
        isWritable = variable.initializer == nullptr;
        break;
    case kStorage_Local:
    case kStorage_Parameter:
        isWritable = !variable.isConst;
        break;
    case kStorage_Global:
    case kStorage_Static:
    case kStorage_RayAttribute:
        break;
    }
    if (isWritable) {
        return true;
    }
    const std::string_view kind =
        variable.isConst ? "a constant" : StorageToString(variable.storage);
    _RefuseWrite(line, action, Quote(variable.name) + ", which is " + std::string(kind));
    if (variable.line > 0) {
        _context.diagnostics.Note(variable.line, Quote(variable.name) + " is declared here");
    }
    return false;
}

const Expression* AccessChecker::Convert(const Expression* value, const Type& type) {
    if (!IsConvertible(value->type, type)) {
        return nullptr;
    }
    return _context.nodes.MakeImplicitConvert(value, type.base);
}

bool AccessChecker::RequireBool(const Expression* condition, std::string_view what) {
    if (condition->type == kBool) {
        return true;
    }
    _context.diagnostics.Error(condition->line, std::string(what) + " must be a bool, found " +
                                                    condition->type.ToString());
    return false;
}

} // namespace Tolen::OpenKL
