#include "compiler/CallChecker.h"

#include "compiler/CheckContext.h"

#include <algorithm>
#include <vector>

namespace Tolen::OpenKL {

namespace {

constexpr std::size_t kMaxCandidatesShown = 6;

bool HasNull(CallChecker::Arguments arguments) {
    return std::find(arguments.begin(), arguments.end(), nullptr) != arguments.end();
}

std::string TypesToString(CallChecker::Arguments arguments) {
    std::string text = "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        text += (i == 0 ? "" : ", ") + arguments[i]->type.ToString();
    }
    return text + ")";
}

std::string ShapesToString(std::span<const ParameterShape> parameters) {
    std::string text = "(";
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        text += i == 0 ? "" : ", ";
        text += parameters[i].direction == kDirection_In ? "" : "out ";
        text += parameters[i].type.ToString();
    }
    return text + ")";
}

std::vector<ParameterShape> GetShapes(const Function& function) {
    std::vector<ParameterShape> shapes;
    for (const Variable* parameter : function.parameters) {
        shapes.push_back({parameter->type, parameter->direction});
    }
    return shapes;
}

} // namespace

const Expression* CallChecker::Call(const Token& name, Arguments arguments) {
    const std::span<Function* const> functions = _context.symbols.FindFunctions(name.text);
    const std::span<const BuiltinSignature> builtins = FindBuiltinFunction(name.text);
    const StructType* structure = _context.symbols.FindStruct(name.text);
    if (functions.empty() && builtins.empty() && structure == nullptr) {
        _ReportUnknown(name);
        return nullptr;
    }
    if (HasNull(arguments)) {
        return nullptr;
    }
    if (arguments.size() > OverloadChooser::kMaxParameters) {
        _context.diagnostics.Error(
            name.line, "call of " + Quote(name.text) + " passes more than the limit of " +
                           std::to_string(OverloadChooser::kMaxParameters) + " arguments");
        return nullptr;
    }
    OverloadChooser own(arguments);
    for (std::size_t i = 0; i < functions.size(); ++i) {
        own.Offer(i, GetShapes(*functions[i]));
    }
    if (const std::size_t best = own.GetBest(); best != OverloadChooser::kNone) {
        return _CallFunction(name.line, functions[best], arguments);
    }
    if (functions.empty() && structure != nullptr) {
        return Construct({.base = kBase_Struct, .structure = structure}, name.line, arguments);
    }
    OverloadChooser language(arguments);
    for (std::size_t i = 0; i < builtins.size(); ++i) {
        language.Offer(i, builtins[i].parameters);
    }
    if (const std::size_t best = language.GetBest();
        best != OverloadChooser::kNone && !own.IsAmbiguous()) {
        return _CallBuiltin(name.line, builtins[best], arguments);
    }
    _ReportNoMatch(name, arguments, builtins, own.IsAmbiguous() || language.IsAmbiguous());
    return nullptr;
}

const Expression* CallChecker::_CallFunction(int line, Function* function, Arguments arguments) {
    std::vector<const Expression*> passed(arguments.begin(), arguments.end());
    if (function->firstCall == 0) {
        function->firstCall = line;
    }
    _context.body->AddCallee(function);
    if (!_PassArguments(GetShapes(*function), passed)) {
        return nullptr;
    }
    return _context.nodes.MakeCall(line, function, passed);
}

const Expression* CallChecker::_CallBuiltin(int line, const BuiltinSignature& signature,
                                            Arguments arguments) {
    if (!IsAvailable(signature.function, _context.stage)) {
        _context.diagnostics.Error(
            line, Quote(BuiltinFunctionToString(signature.function)) + " belongs to " +
                      GetStages(signature.function) + " programs and cannot be called in a " +
                      std::string(StageToString(_context.stage)) + " program");
        return nullptr;
    }
    std::vector<const Expression*> passed(arguments.begin(), arguments.end());
    if (!_PassArguments(signature.parameters, passed)) {
        return nullptr;
    }
    return _context.nodes.MakeBuiltinCall(signature.returnType, line, signature.function, passed);
}

bool CallChecker::_PassArguments(std::span<const ParameterShape> parameters,
                                 std::vector<const Expression*>& arguments) {
    bool isGood = true;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].direction == kDirection_In) {
            arguments[i] = _access.Convert(arguments[i], parameters[i].type);
            isGood = isGood && arguments[i] != nullptr;
            continue;
        }
        const bool readsToo = parameters[i].direction == kDirection_InOut;
        const std::string action = std::string("pass as ") + (readsToo ? "inout" : "out") +
                                   " argument " + std::to_string(i + 1);
        if (!_access.Write(arguments[i], readsToo, action)) {
            isGood = false;
        }
    }
    return isGood;
}

void CallChecker::_ReportUnknown(const Token& name) {
    if (!_context.symbols.MarkUnknown(name.text)) {
        return;
    }
    if (IsUnsupportedTextureFunction(name.text)) {
        _context.diagnostics.Error(name.line, Quote(name.text) +
                                                  " is not supported; textures are read by "
                                                  "texture2D(sampler2D, vec2)");
        return;
    }
    _context.diagnostics.Error(name.line, "function " + Quote(name.text) + " is not declared");
}

void CallChecker::_ReportNoMatch(const Token& name, Arguments arguments,
                                 std::span<const BuiltinSignature> builtins, bool isAmbiguous) {
    std::string text = isAmbiguous ? "several functions " : "no function ";
    text += Quote(name.text) + (isAmbiguous ? " can take " : " takes ") + TypesToString(arguments);
    const std::size_t shown = std::min(builtins.size(), kMaxCandidatesShown);
    for (std::size_t i = 0; i < shown; ++i) {
        text += i == 0 ? "; it takes " : i + 1 == builtins.size() ? " or " : ", ";
        text += ShapesToString(builtins[i].parameters);
    }
    text += builtins.size() > shown ? " and more" : "";
    _context.diagnostics.Error(name.line, text);
    std::size_t notes = 0;
    for (const Function* function : _context.symbols.FindFunctions(name.text)) {
        if (notes++ == kMaxCandidatesShown) {
            break;
        }
        _context.diagnostics.Note(function->line,
                                  Quote(function->GetSignature()) + " is declared here");
    }
}

const Expression* CallChecker::Construct(const Type& type, int line, Arguments arguments) {
    if (HasNull(arguments)) {
        return nullptr;
    }
    if (type.IsArray() || type.IsStruct()) {
        return _ConstructMembers(type, line, arguments);
    }
    if (!type.IsNumericOrBool()) {
        _context.diagnostics.Error(line, type.ToString() + " has no constructor");
        return nullptr;
    }
    if (arguments.empty()) {
        _context.diagnostics.Error(line, Quote(type.ToString()) + " needs at least one argument");
        return nullptr;
    }
    for (const Expression* argument : arguments) {
        if (!argument->type.IsNumericOrBool()) {
            _context.diagnostics.Error(line, "cannot make " + type.ToString() + " of " +
                                                 argument->type.ToString());
            return nullptr;
        }
    }
    return type.IsScalar() ? _ConstructScalar(type, line, arguments)
                           : _ConstructComponents(type, line, arguments);
}

const Expression* CallChecker::_ConstructScalar(const Type& type, int line, Arguments arguments) {
    if (arguments.size() > 1) {
        _context.diagnostics.Error(line, Quote(type.ToString()) + " takes one argument, found " +
                                             std::to_string(arguments.size()));
        return nullptr;
    }
    // Of a vector or matrix the first component counts.
    const Expression* value = arguments[0];
    while (value != nullptr && !value->type.IsScalar()) {
        value = value->type.IsVector()
                    ? _context.nodes.MakeSwizzle(value->type.GetElement(), line, value, {})
                    : _context.nodes.MakeIndex(line, value, _context.nodes.MakeInt(line, 0));
    }
    if (value == nullptr) {
        return nullptr;
    }
    return value->type == type ? _context.nodes.MakeValue(value)
                               : _context.nodes.MakeConvert(value, type.base);
}

const Expression* CallChecker::_ConstructComponents(const Type& type, int line,
                                                    Arguments arguments) {
    std::vector<const Expression*> values;
    int found = 0;
    const int needed = type.CountScalars();
    const bool isResize = type.IsMatrix() && arguments.size() == 1 && arguments[0]->type.IsMatrix();
    const bool isSingleScalar = arguments.size() == 1 && arguments[0]->type.IsScalar();
    for (const Expression* argument : arguments) {
        if (found >= needed && !isResize) {
            _context.diagnostics.Error(line, "too many arguments for " + Quote(type.ToString()) +
                                                 ", which has " + std::to_string(needed) +
                                                 " components: " + TypesToString(arguments));
            return nullptr;
        }
        found += argument->type.CountScalars();
        values.push_back(_context.nodes.MakeConvert(argument, type.base));
    }
    if (found < needed && !isResize && !isSingleScalar) {
        _context.diagnostics.Error(line, "too few arguments for " + Quote(type.ToString()) +
                                             ", which has " + std::to_string(needed) +
                                             " components: " + TypesToString(arguments));
        return nullptr;
    }
    if (HasNull(values)) {
        return nullptr;
    }
    if (values.size() == 1 && values[0]->type == type) {
        return _context.nodes.MakeValue(values[0]);
    }
    const ConstructForm form = isResize          ? kConstruct_Resize
                               : !isSingleScalar ? kConstruct_Components
                               : type.IsMatrix() ? kConstruct_Diagonal
                                                 : kConstruct_Splat;
    return _context.nodes.MakeConstruct(type, line, form, values);
}

const Expression* CallChecker::_ConstructMembers(const Type& type, int line, Arguments arguments) {
    const std::size_t needed =
        type.IsArray() ? static_cast<std::size_t>(type.arrayLength) : type.structure->fields.size();
    if (arguments.size() != needed) {
        _context.diagnostics.Error(line, Quote(type.ToString()) + " takes " +
                                             std::to_string(needed) + " arguments, found " +
                                             std::to_string(arguments.size()));
        return nullptr;
    }
    std::vector<const Expression*> values;
    for (std::size_t i = 0; i < needed; ++i) {
        const Type wanted = type.IsArray() ? type.GetElement() : type.structure->fields[i].type;
        if (!IsConvertible(arguments[i]->type, wanted)) {
            _context.diagnostics.Error(line, "argument " + std::to_string(i + 1) + " of " +
                                                 Quote(type.ToString()) + " must be " +
                                                 wanted.ToString() + ", found " +
                                                 arguments[i]->type.ToString());
            return nullptr;
        }
        values.push_back(_access.Convert(arguments[i], wanted));
    }
    return HasNull(values) ? nullptr
                           : _context.nodes.MakeConstruct(type, line, kConstruct_Members, values);
}

} // namespace Tolen::OpenKL
