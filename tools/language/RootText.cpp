#include "RootText.h"

#include "TolenEffects/Module.h"

namespace Tolen::Language {

using namespace Effects;

namespace {

constexpr const char* kImage = "tolenCheckImage";
constexpr const char* kArgument = "tolenCheckArgument";

std::string TypeOf(const Type& type) {
    return TypeSpecifierToString(type.GetTypeSpecifier());
}

/// "[3]" of an array; "" of a single value.
std::string BracketsOf(const Type& type) {
    if (!type.IsArray()) {
        return "";
    }
    const Expression* const length = type.GetLength();
    if (length == nullptr || length->GetClass() != kClass_IntConstant) {
        return "[]";
    }
    return "[" + std::to_string(static_cast<const IntConstant*>(length)->GetValue()) + "]";
}

/// One call in a block of its own, behind variables for its arguments.
/// @return an empty text when an argument can't be made
std::string MakeCall(const std::string& before, const FunctionPrototype& function) {
    std::string variables;
    std::string arguments;
    int number = 0;
    for (const FunctionParameter* const parameter : function.GetParameters()) {
        const Type& type = *parameter->GetType();
        std::string argument = kArgument + std::to_string(number++);
        switch (type.GetTypeSpecifier()) {
        case kType_Sampler2D:
            argument = kImage;
            break;
        case kType_Sampler3D:
        case kType_SamplerCube:
        case kType_UserDefined:
            return "";
        default:
            variables += TypeOf(type) + " " + argument + BracketsOf(type) + "; ";
        }
        arguments += (arguments.empty() ? "" : ", ") + argument;
    }
    return "{ " + variables + before + function.GetName()->GetString() + "(" + arguments + "); }\n";
}

std::string MakeHead(const FunctionPrototype& function) {
    std::string parameters;
    int number = 0;
    for (const FunctionParameter* const parameter : function.GetParameters()) {
        const Type& type = *parameter->GetType();
        const ParameterQualifier qualifier = parameter->GetParameterQualifier();
        parameters += parameters.empty() ? "" : ", ";
        parameters += qualifier == kParameterQualifier_Out     ? "out "
                      : qualifier == kParameterQualifier_InOut ? "inout "
                                                               : "";
        parameters += TypeOf(type) + " " + kArgument + std::to_string(number++) + BracketsOf(type);
    }
    return TypeOf(*function.GetReturnType()) + " " + function.GetName()->GetString() + "(" +
           parameters + ")";
}

} // namespace

std::string MakeRoot(const std::string& name, const ClassDefinition* pClass,
                     const std::vector<const FunctionPrototype*>& methods) {
    const std::string className = pClass == nullptr ? "" : pClass->GetName()->GetString();
    std::string text = "class " + name + " {\ninput sampler2D " + kImage + ";\n";
    if (pClass != nullptr) {
        text += "input " + className + " part;\n";
    }
    text += "void All() {\n";
    for (const FunctionPrototype* const method : methods) {
        const bool isStatic = method->GetQualifier() == kFunctionQualifier_Static;
        const std::string object = isStatic ? className : "part";
        text += MakeCall(pClass == nullptr ? "" : object + ".", *method);
    }
    return text + "}\nvoid Shade() { All(); }\nvoid Render() { All(); }\n}\n";
}

std::string MakeImplementation(const std::string& name, const InterfaceDefinition& of) {
    std::string text = "class " + name + " : " + of.GetName()->GetString() + " {\n";
    for (const FunctionPrototype* const method : of.GetMemberFunctions()) {
        const TypeSpecifier type = method->GetReturnType()->GetTypeSpecifier();
        text += MakeHead(*method) + " { ";
        if (type == kType_Primitive) {
            text += "primitive result; return result; ";
        } else if (type != kType_Void) {
            text += "return " + TypeOf(*method->GetReturnType()) + "(" +
                    (type == kType_Bool || type == kType_BVec2 || type == kType_BVec3 ||
                             type == kType_BVec4
                         ? "false"
                         : "0") +
                    "); ";
        }
        text += "}\n";
    }
    return text + "}\n";
}

} // namespace Tolen::Language
