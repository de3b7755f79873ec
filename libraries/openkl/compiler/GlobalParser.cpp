#include "compiler/GlobalParser.h"

#include "compiler/BuiltinTable.h"
#include "compiler/Limits.h"
#include "compiler/OverloadChooser.h"

#include <algorithm>
#include <unordered_set>

namespace Tolen::OpenKL {

namespace {

/// How deep structs may hold structs.
constexpr int kMaxStructDepth = 64;

int GetStructDepth(const Type& type) {
    int depth = 0;
    if (type.base == kBase_Struct) {
        for (const StructField& field : type.structure->fields) {
            depth = std::max(depth, GetStructDepth(field.type));
        }
        ++depth;
    }
    return depth;
}

bool HaveSameParameterTypes(const Function& function, std::span<Variable* const> parameters) {
    return std::equal(function.parameters.begin(), function.parameters.end(), parameters.begin(),
                      parameters.end(),
                      [](const Variable* a, const Variable* b) { return a->type == b->type; });
}

bool HaveSameDirections(const Function& function, std::span<Variable* const> parameters) {
    return std::equal(function.parameters.begin(), function.parameters.end(), parameters.begin(),
                      parameters.end(), [](const Variable* a, const Variable* b) {
                          return a->direction == b->direction;
                      });
}

} // namespace

GlobalParser::GlobalParser(CheckContext& context, TokenStream& tokens, CompiledShader& shader)
    : _context(context), _tokens(tokens), _shader(shader), _expressions(context, tokens),
      _declarations(context, tokens, _expressions),
      _statements(context, tokens, _expressions, _declarations) {}

void GlobalParser::Parse() {
    _context.body = &_initializers;
    while (!_tokens.Is(kToken_End) && !_context.diagnostics.IsFull()) {
        if (_tokens.Accept(kToken_Semicolon) || _ParseDeclaration()) {
            continue;
        }
        _tokens.SkipStatement();
        _tokens.Accept(kToken_RightBrace);
    }
    for (const PendingBody& pending : _bodies) {
        if (!_context.diagnostics.IsFull()) {
            _ParseBody(pending);
        }
    }
    _shader.initializerCallees = _context.arena.Copy(_initializers.callees);
}

bool GlobalParser::_ParseDeclaration() {
    if (_tokens.IsWord("uniformblock") &&
        (_tokens.Is(kToken_Identifier, 1) || _tokens.Is(kToken_LeftBrace, 1))) {
        return _ParseUniformBlock();
    }
    if (_tokens.IsWord("precision") && _tokens.Is(kToken_Identifier, 1)) {
        _tokens.SkipStatement();
        return true;
    }
    Qualifiers qualifiers;
    if (!_ParseQualifiers(qualifiers)) {
        return false;
    }
    if (_tokens.Is(kToken_Struct)) {
        return _ParseStruct(qualifiers);
    }
    const std::optional<Type> type = _declarations.ParseType(_tokens.Is(kToken_LeftParenthesis, 2));
    if (!type) {
        return false;
    }
    if (!_tokens.Is(kToken_Identifier)) {
        _context.diagnostics.Error(_tokens.Peek().line,
                                   "expected a name, found " + Describe(_tokens.Peek()));
        return false;
    }
    return _tokens.Is(kToken_LeftParenthesis, 1) ? _ParseFunction(qualifiers, *type)
                                                 : _ParseVariables(qualifiers, *type);
}

bool GlobalParser::_ParseQualifiers(Qualifiers& qualifiers) {
    enum Word : unsigned {
        kWord_Const = 1,
        kWord_Static = 2,
        kWord_Uniform = 4,
        kWord_Mutable = 8,
        kWord_Attribute = 16,
        kWord_Varying = 32,
        kWord_Normalized = 64,
        kWord_Transformed = 128,
        kWord_Invariant = 256,
        kWord_RayAttribute = 512,
    };
    static constexpr struct {
        std::string_view text;
        unsigned word;
    } kWords[] = {
        {"const", kWord_Const},           {"static", kWord_Static},
        {"uniform", kWord_Uniform},       {"mutable", kWord_Mutable},
        {"attribute", kWord_Attribute},   {"varying", kWord_Varying},
        {"normalized", kWord_Normalized}, {"transformed", kWord_Transformed},
        {"invariant", kWord_Invariant},   {"rayattribute", kWord_RayAttribute},
    };
    // Every good combination; `static` beside a qualifier adds nothing.
    static constexpr struct {
        unsigned words;
        Storage storage;
        VaryingKind varyingKind;
    } kCombinations[] = {
        {0, kStorage_Global, kVarying_Plain},
        {kWord_Static, kStorage_Static, kVarying_Plain},
        {kWord_Const, kStorage_Const, kVarying_Plain},
        {kWord_Uniform, kStorage_Uniform, kVarying_Plain},
        {kWord_Mutable | kWord_Uniform, kStorage_MutableUniform, kVarying_Plain},
        {kWord_Attribute, kStorage_Attribute, kVarying_Plain},
        {kWord_RayAttribute, kStorage_RayAttribute, kVarying_Plain},
        {kWord_Varying, kStorage_Varying, kVarying_Plain},
        {kWord_Normalized | kWord_Varying, kStorage_Varying, kVarying_Normalized},
        {kWord_Transformed | kWord_Varying, kStorage_Varying, kVarying_Transformed},
        {kWord_Transformed | kWord_Invariant | kWord_Varying, kStorage_Varying,
         kVarying_TransformedInvariant},
        {kWord_Transformed | kWord_Normalized | kWord_Varying, kStorage_Varying,
         kVarying_TransformedNormalized},
    };
    qualifiers.line = _tokens.Peek().line;
    unsigned words = 0;
    std::string text;
    while (true) {
        _declarations.SkipPrecision();
        const Token& token = _tokens.Peek();
        const auto* found = std::find_if(std::begin(kWords), std::end(kWords),
                                         [&](const auto& word) { return word.text == token.text; });
        if (found == std::end(kWords)) {
            break;
        }
        text += (text.empty() ? "" : " ") + std::string(token.text);
        if ((words & found->word) != 0) {
            _context.diagnostics.Error(token.line, Quote(text) + " names a qualifier twice");
            return false;
        }
        words |= found->word;
        _tokens.Take();
    }
    const auto* good =
        std::find_if(std::begin(kCombinations), std::end(kCombinations), [&](const auto& known) {
            return known.words == words || (known.words | kWord_Static) == words;
        });
    if (good == std::end(kCombinations)) {
        _context.diagnostics.Error(qualifiers.line,
                                   "the qualifiers " + Quote(text) + " don't go together");
        return false;
    }
    qualifiers.storage = good->storage;
    qualifiers.varyingKind = good->varyingKind;
    return true;
}

bool GlobalParser::_ParseFields(std::vector<StructField>& fields) {
    if (!_tokens.Expect(kToken_LeftBrace, "'{'")) {
        return false;
    }
    if (_tokens.Is(kToken_RightBrace)) {
        _context.diagnostics.Error(_tokens.Peek().line, "a struct needs at least one field");
    }
    std::unordered_set<std::string_view> names;
    while (!_tokens.Accept(kToken_RightBrace)) {
        const std::optional<Type> type = _declarations.ParseType();
        if (!type) {
            return false;
        }
        do {
            if (!_tokens.Is(kToken_Identifier)) {
                _context.diagnostics.Error(_tokens.Peek().line,
                                           "expected a name, found " + Describe(_tokens.Peek()));
                return false;
            }
            const Token& name = _tokens.Take();
            StructField field{name.text, *type, 0, name.line};
            if (!_declarations.ParseArrayPart(field.type, name.text)) {
                return false;
            }
            if (field.type.arrayLength < 0) {
                _context.diagnostics.Error(name.line,
                                           "array " + Quote(name.text) + " needs a length");
                field.type.arrayLength = 1;
            }
            if (!names.insert(name.text).second) {
                _context.diagnostics.Error(name.line,
                                           "field " + Quote(name.text) + " is declared twice");
            } else if (!field.type.IsVoid()) {
                fields.push_back(field);
            }
        } while (_tokens.Accept(kToken_Comma));
        if (!_tokens.ExpectSemicolon()) {
            return false;
        }
    }
    return true;
}

bool GlobalParser::_ParseStruct(const Qualifiers& qualifiers) {
    const int line = _tokens.Take().line;
    StructType* structure = _context.arena.New<StructType>();
    structure->line = line;
    if (_tokens.Is(kToken_Identifier)) {
        structure->name = _tokens.Take().text;
    }
    std::vector<StructField> fields;
    if (!_ParseFields(fields)) {
        return false;
    }
    std::int64_t offset = 0;
    int depth = 0;
    for (StructField& field : fields) {
        field.offset = static_cast<int>(std::min<std::int64_t>(offset, kMaxScalarsInVariable));
        offset += field.type.CountScalars();
        depth = std::max(depth, GetStructDepth(field.type));
    }
    if (offset > kMaxScalarsInVariable) {
        _context.diagnostics.Error(line, "struct " + Quote(structure->name) + " holds " +
                                             std::to_string(offset) + " scalars; the limit is " +
                                             std::to_string(kMaxScalarsInVariable));
    }
    if (depth >= kMaxStructDepth) {
        _context.diagnostics.Error(
            line, "struct " + Quote(structure->name) + " passes the limit of " +
                      std::to_string(kMaxStructDepth) + " structs inside of one another");
        return true; // it stays unknown, so that the next one is no deeper
    }
    structure->fields = _context.arena.Copy(fields);
    structure->scalarCount =
        static_cast<int>(std::min<std::int64_t>(offset, kMaxScalarsInVariable));
    if (!structure->name.empty()) {
        if (const StructType* other = _context.symbols.FindStruct(structure->name)) {
            _context.diagnostics.Error(line,
                                       "struct " + Quote(structure->name) + " is declared twice");
            _context.diagnostics.Note(other->line, "the other declaration is here");
        }
        _context.symbols.AddStruct(structure);
    }
    if (_tokens.Is(kToken_Identifier)) {
        return _ParseVariables(qualifiers, {.base = kBase_Struct, .structure = structure});
    }
    return _tokens.ExpectSemicolon();
}

bool GlobalParser::_ParseUniformBlock() {
    const int line = _tokens.Take().line;
    Token name = _tokens.Peek();
    if (!_tokens.Accept(kToken_Identifier)) {
        _context.diagnostics.Error(line, "a uniform block needs a name");
    }
    std::vector<StructField> fields;
    if (!_ParseFields(fields) || !_tokens.ExpectSemicolon()) {
        return false;
    }
    if (fields.empty()) {
        return true; // which was reported
    }
    if (fields.size() != 1 || !fields[0].type.IsArray() || fields[0].type.base == kBase_Struct) {
        _context.diagnostics.Error(line, "a uniform block holds one array of a built-in type, as "
                                         "in 'uniformblock B { vec3 a[1]; };'");
        return true;
    }
    Variable* block =
        _declarations.MakeVariable(name, fields[0].type.GetElement(), kStorage_UniformBlock);
    block->blockMember = fields[0].name;
    _DeclareGlobal(block);
    return true;
}

bool GlobalParser::_ParseVariables(const Qualifiers& qualifiers, const Type& type) {
    do {
        if (!_ParseVariable(qualifiers, type)) {
            return false;
        }
    } while (_tokens.Accept(kToken_Comma));
    return _tokens.ExpectSemicolon();
}

bool GlobalParser::_ParseVariable(const Qualifiers& qualifiers, const Type& type) {
    if (!_tokens.Is(kToken_Identifier)) {
        _context.diagnostics.Error(_tokens.Peek().line,
                                   "expected a name, found " + Describe(_tokens.Peek()));
        return false;
    }
    const Token& name = _tokens.Take();
    Variable* variable = _declarations.MakeVariable(name, type, qualifiers.storage);
    variable->varyingKind = qualifiers.varyingKind;
    if (!_declarations.ParseArrayPart(variable->type, name.text)) {
        return false;
    }
    if (_tokens.Is(kToken_Assign)) {
        const int line = _tokens.Take().line;
        if (!_declarations.ParseInitializer(*variable, variable->initializer)) {
            return false;
        }
        if (variable->storage > kStorage_Static && variable->initializer != nullptr) {
            _context.diagnostics.Error(line, Quote(name.text) + " is " +
                                                 std::string(StorageToString(variable->storage)) +
                                                 " and cannot have an initialiser");
            variable->initializer = nullptr;
        }
    }
    if (variable->type.arrayLength < 0) {
        _context.diagnostics.Error(name.line, "array " + Quote(name.text) + " needs a length");
        variable->type = kVoid;
    }
    const bool isLiteral =
        variable->initializer != nullptr && variable->initializer->kind == kExpression_Literal;
    if (variable->storage == kStorage_Const && isLiteral) {
        variable->constant = &variable->initializer->As<LiteralExpression>();
    }
    _DeclareGlobal(variable);
    return true;
}

void GlobalParser::_DeclareGlobal(Variable* variable) {
    if (!variable->type.IsVoid() && !_CheckStorage(*variable)) {
        variable->type = kVoid;
    }
    if (Variable* known = _context.symbols.FindVariable(variable->name)) {
        if (!_MergeGlobal(known, variable)) {
            _context.diagnostics.Error(variable->line,
                                       Quote(variable->name) + " is declared twice");
            _context.diagnostics.Note(known->line, "the other declaration is here");
        }
        return;
    }
    _context.symbols.AddVariable(variable);
    if (!variable->type.IsVoid()) {
        _shader.globals.push_back(variable);
    }
}

/// A global may be declared again alike; its transformation and one initialiser may be missing.
bool GlobalParser::_MergeGlobal(Variable* known, const Variable* again) {
    if (known->type.IsVoid() || again->type.IsVoid()) {
        return true;
    }
    const bool areAlike = known->type == again->type && known->storage == again->storage &&
                          known->blockMember == again->blockMember;
    if (!areAlike || again->initializer != nullptr) {
        return false;
    }
    if (known->varyingKind == kVarying_Plain) {
        known->varyingKind = again->varyingKind;
    }
    return true;
}

/// Whether variables of a storage can have a type, and the stage can have the storage.
bool GlobalParser::_CheckStorage(const Variable& variable) {
    const Type& type = variable.type;
    const bool isValue = type.base >= kBase_Float && type.base <= kBase_Bool;
    std::string_view expected;
    switch (variable.storage) {
    case kStorage_Uniform:
    case kStorage_MutableUniform:
        expected = type.base == kBase_Struct ? "no struct" : "";
        break;
    case kStorage_Attribute:
        if (_context.stage != kStage_Vertex) {
            _context.diagnostics.Error(variable.line,
                                       Quote(variable.name) +
                                           " is an attribute, which belongs to vertex programs");
            return false;
        }
        expected = isValue && !type.IsArray() ? "" : "a number, a vector or a matrix";
        break;
    case kStorage_Varying:
        expected = type.base == kBase_Float && !type.IsArray()
                       ? ""
                       : "a float, a vector of floats or a matrix";
        break;
    case kStorage_RayAttribute:
        expected = isValue || type.base == kBase_Primitive
                       ? ""
                       : "a number, a vector, a matrix or a primitive";
        break;
    default:
        break;
    }
    if (expected.empty()) {
        return true;
    }
    _context.diagnostics.Error(variable.line, Quote(variable.name) + " is " +
                                                  std::string(StorageToString(variable.storage)) +
                                                  " and must be " + std::string(expected) +
                                                  ", found " + type.ToString());
    return false;
}

bool GlobalParser::_ParseFunction(const Qualifiers& qualifiers, const Type& returnType) {
    const Token& name = _tokens.Take();
    if (qualifiers.storage != kStorage_Global && qualifiers.storage != kStorage_Static) {
        _context.diagnostics.Error(qualifiers.line, "function " + Quote(name.text) +
                                                        " cannot have storage qualifiers");
    }
    std::vector<Variable*> parameters;
    if (!_ParseParameters(parameters)) {
        return false;
    }
    const bool isDefinition = _tokens.Is(kToken_LeftBrace);
    Function* function =
        _DeclareFunction(name, returnType, _context.arena.Copy(parameters), isDefinition);
    if (!isDefinition) {
        return _tokens.ExpectSemicolon();
    }
    const std::size_t position = _tokens.GetPosition();
    const int line = _tokens.Peek().line;
    if (!_tokens.SkipBraces()) {
        _context.diagnostics.Error(line, "the body of " + Quote(name.text) + " has no '}'");
    }
    if (function != nullptr) {
        _bodies.push_back({function, position});
    }
    return true;
}

bool GlobalParser::_ParseParameters(std::vector<Variable*>& parameters) {
    _tokens.Take();
    if (_tokens.Is(kToken_Void) && _tokens.Is(kToken_RightParenthesis, 1)) {
        _tokens.Take();
    }
    if (_tokens.Accept(kToken_RightParenthesis)) {
        return true;
    }
    do {
        if (!_ParseParameter(parameters)) {
            return false;
        }
    } while (_tokens.Accept(kToken_Comma));
    if (parameters.size() > OverloadChooser::kMaxParameters) {
        _context.diagnostics.Error(_tokens.Peek().line,
                                   "a function has more than the limit of " +
                                       std::to_string(OverloadChooser::kMaxParameters) +
                                       " parameters");
        return false;
    }
    return _tokens.Expect(kToken_RightParenthesis, "',' or ')'");
}

bool GlobalParser::_ParseParameter(std::vector<Variable*>& parameters) {
    bool isConst = false;
    Direction direction = kDirection_In;
    while (true) {
        if (_tokens.Accept(kToken_Const)) {
            isConst = true;
        } else if (_tokens.Accept(kToken_Out)) {
            direction = kDirection_Out;
        } else if (_tokens.Accept(kToken_InOut)) {
            direction = kDirection_InOut;
        } else if (!_tokens.Accept(kToken_In)) {
            break;
        }
    }
    const std::optional<Type> type = _declarations.ParseType();
    if (!type) {
        return false;
    }
    Token name = _tokens.Peek();
    if (!_tokens.Accept(kToken_Identifier)) {
        name.text = {};
    }
    Variable* parameter = _declarations.MakeVariable(name, *type, kStorage_Parameter);
    parameter->direction = direction;
    parameter->isConst = isConst;
    if (!_declarations.ParseArrayPart(parameter->type, name.text)) {
        return false;
    }
    if (parameter->type.arrayLength < 0) {
        _context.diagnostics.Error(name.line, "an array that is a parameter needs a length");
        parameter->type = kVoid;
    }
    parameters.push_back(parameter);
    return true;
}

Function* GlobalParser::_DeclareFunction(const Token& name, const Type& returnType,
                                         std::span<Variable* const> parameters, bool isDefinition) {
    Function* function = nullptr;
    for (Function* known : _context.symbols.FindFunctions(name.text)) {
        if (HaveSameParameterTypes(*known, parameters)) {
            function = known;
        }
    }
    if (function == nullptr) {
        function = _context.arena.New<Function>();
        function->name = name.text;
        function->returnType = returnType;
        function->parameters = parameters;
        function->line = name.line;
        _context.symbols.AddFunction(function);
        _shader.functions.push_back(function);
    } else if (function->returnType != returnType || !HaveSameDirections(*function, parameters)) {
        _context.diagnostics.Error(name.line,
                                   Quote(function->GetSignature()) + " is declared " +
                                       (function->returnType != returnType
                                            ? "with the return types " + returnType.ToString() +
                                                  " and " + function->returnType.ToString()
                                            : "with other directions of its parameters"));
        _context.diagnostics.Note(function->line, "the other declaration is here");
        return nullptr;
    }
    if (!isDefinition) {
        return function;
    }
    if (!_defined.insert(function).second) {
        _context.diagnostics.Error(name.line,
                                   Quote(function->GetSignature()) + " is defined twice");
        _context.diagnostics.Note(function->line, "the other definition is here");
        return nullptr;
    }
    function->parameters = parameters;
    function->line = name.line;
    _CheckEntry(*function);
    return function;
}

/// The functions that the language calls take and give nothing.
void GlobalParser::_CheckEntry(const Function& function) {
    const bool isEntry = function.name == "main" || function.name == "setup";
    if (isEntry && (!function.parameters.empty() || !function.returnType.IsVoid())) {
        _context.diagnostics.Error(function.line, Quote(function.name) + " must be 'void " +
                                                      std::string(function.name) + "()', found '" +
                                                      function.returnType.ToString() + " " +
                                                      function.GetSignature() + "'");
    }
}

void GlobalParser::_ParseBody(const PendingBody& pending) {
    Function& function = *pending.function;
    BodyRecord record;
    record.function = &function;
    _context.body = &record;
    _tokens.SetPosition(pending.position);
    _context.symbols.PushScope();
    for (Variable* parameter : function.parameters) {
        _declarations.Declare(parameter);
    }
    function.body = _statements.ParseBody();
    _context.symbols.PopScope();
    function.locals = _context.arena.Copy(record.locals);
    function.callees = _context.arena.Copy(record.callees);
}

} // namespace Tolen::OpenKL
