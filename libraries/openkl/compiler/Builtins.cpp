#include "compiler/Builtins.h"

namespace Tolen::OpenKL {

std::string_view StageToString(Stage stage) {
    switch (stage) {
    case kStage_Ray:
        return "ray";
    case kStage_Vertex:
        return "vertex";
    case kStage_Frame:
        return "frame";
    case kStage_Prefix:
        return "prefix";
    }
    return {};
}

std::string_view BuiltinVariableToString(BuiltinVariable variable) {
    static constexpr std::string_view kNames[] = {
#define TOLEN_OPENKL_NAME(name, text) text,
        TOLEN_OPENKL_BUILTIN_VARIABLES(TOLEN_OPENKL_NAME)
#undef TOLEN_OPENKL_NAME
    };
    return variable < kVariable_Count ? kNames[variable] : std::string_view();
}

std::string_view BuiltinFunctionToString(BuiltinFunction function) {
    static constexpr std::string_view kNames[] = {
#define TOLEN_OPENKL_NAME(name, text) text,
        TOLEN_OPENKL_BUILTIN_FUNCTIONS(TOLEN_OPENKL_NAME)
#undef TOLEN_OPENKL_NAME
    };
    return function < kFunction_Count ? kNames[function] : std::string_view();
}

} // namespace Tolen::OpenKL
