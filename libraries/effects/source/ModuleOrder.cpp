#include "ModuleOrder.h"

#include "SyntaxSupport.h"
#include "SyntaxWalk.h"

#include <algorithm>
#include <tuple>

namespace Tolen::Effects {

namespace {

/// What tells two parameters apart, weightiest first.
auto ParameterKey(const FunctionParameter& parameter) {
    const Type* type = parameter.GetType();
    const auto* length = AsExactly<IntConstant>(type->GetLength());
    const auto* userType = AsExactly<UserType>(type);
    return std::make_tuple(type->GetTypeSpecifier(), parameter.GetParameterQualifier(),
                           std::cref(TextOf(parameter.GetName())), type->IsArray(),
                           length == nullptr ? 0 : length->GetValue(),
                           std::cref(TextOf(userType == nullptr ? nullptr : userType->GetName())));
}

int Compare(const FunctionParameter& a, const FunctionParameter& b) {
    if (ParameterKey(a) < ParameterKey(b)) {
        return -1;
    }
    return ParameterKey(b) < ParameterKey(a) ? 1 : 0;
}

/// Whether two prototypes have the same keys before the parameters.
bool HaveSameHead(const FunctionPrototype& a, const FunctionPrototype& b) {
    const auto specifier = [](const FunctionPrototype& prototype) {
        const Type* type = prototype.GetReturnType();
        return type == nullptr ? kType_Void : type->GetTypeSpecifier();
    };
    return a.GetQualifier() == b.GetQualifier() && TextOf(a.GetName()) == TextOf(b.GetName()) &&
           specifier(a) == specifier(b) && a.GetCountParameters() == b.GetCountParameters();
}

/// The order of `operator<` made a strict weak one: that operator stops at the first parameters
/// that are not equal, though it may know no order between them.
bool IsBefore(const FunctionPrototype& a, const FunctionPrototype& b) {
    if (!HaveSameHead(a, b)) {
        return a < b;
    }
    for (std::size_t i = 0; i < a.GetCountParameters(); ++i) {
        if (const int order = Compare(*a.GetParameters()[i], *b.GetParameters()[i]); order != 0) {
            return order < 0;
        }
    }
    return false;
}

} // namespace

void SortModule(Module* module) {
    const auto byValue = [](const auto* a, const auto* b) { return *a < *b; };
    auto& structs = module->GetStructDefinitions();
    std::stable_sort(structs.begin(), structs.end(), byValue);
    auto& variables = module->GetVariableDeclarations();
    std::stable_sort(variables.begin(), variables.end(), byValue);
    auto& prototypes = module->GetFunctionDeclarations();
    std::stable_sort(
        prototypes.begin(), prototypes.end(),
        [](const FunctionPrototype* a, const FunctionPrototype* b) { return IsBefore(*a, *b); });
    auto& functions = module->GetFunctionDefinitions();
    std::stable_sort(functions.begin(), functions.end(),
                     [](const FunctionDefinition* a, const FunctionDefinition* b) {
                         return IsBefore(*a->GetFunctionPrototype(), *b->GetFunctionPrototype());
                     });
}

} // namespace Tolen::Effects
