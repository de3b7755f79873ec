#include "compiler/BuiltinTable.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

namespace {

using StageMask = std::uint8_t;

constexpr StageMask MaskOf(Stage stage) {
    return static_cast<StageMask>(1 << stage);
}
constexpr StageMask kRay = MaskOf(kStage_Ray);
constexpr StageMask kVertex = MaskOf(kStage_Vertex);
constexpr StageMask kFrame = MaskOf(kStage_Frame);
constexpr StageMask kPrefix = MaskOf(kStage_Prefix);
constexpr StageMask kTracing = kFrame | kRay | kPrefix;
constexpr StageMask kHitting = kRay | kPrefix;
constexpr StageMask kAll = kTracing | kVertex;

struct SignatureText {
    BuiltinFunction function;
    /// The result, a colon, and the parameters, one letter each. Small letters and digits are
    /// single types: v void, f float, i int, b bool, p primitive, s sampler2D, 2 vec2, 3 vec3,
    /// 4 vec4, j ivec2. Capitals stand for one size at a time, the same throughout a signature:
    /// G, J, H for float, int and bool of 1 to 4 components, V, K, L for vectors of 2 to 4, M for
    /// square matrices of 2 to 4. A `>` marks the next parameter as out.
    const char* text;
};

constexpr SignatureText kSignatures[] = {
    {kFunction_Radians, "G:G"},
    {kFunction_Degrees, "G:G"},
    {kFunction_Sin, "G:G"},
    {kFunction_Cos, "G:G"},
    {kFunction_Tan, "G:G"},
    {kFunction_Asin, "G:G"},
    {kFunction_Acos, "G:G"},
    {kFunction_Atan, "G:G"},
    {kFunction_Atan, "G:GG"},
    {kFunction_Sinh, "G:G"},
    {kFunction_Cosh, "G:G"},
    {kFunction_Tanh, "G:G"},
    {kFunction_Asinh, "G:G"},
    {kFunction_Acosh, "G:G"},
    {kFunction_Atanh, "G:G"},
    {kFunction_Pow, "G:GG"},
    {kFunction_Exp, "G:G"},
    {kFunction_Log, "G:G"},
    {kFunction_Exp2, "G:G"},
    {kFunction_Log2, "G:G"},
    {kFunction_Sqrt, "G:G"},
    {kFunction_InverseSqrt, "G:G"},
    {kFunction_Abs, "G:G"},
    {kFunction_Abs, "J:J"},
    {kFunction_Sign, "G:G"},
    {kFunction_Sign, "J:J"},
    {kFunction_Floor, "G:G"},
    {kFunction_Trunc, "G:G"},
    {kFunction_Round, "G:G"},
    {kFunction_RoundEven, "G:G"},
    {kFunction_Ceil, "G:G"},
    {kFunction_Fract, "G:G"},
    {kFunction_Mod, "G:GG"},
    {kFunction_Mod, "G:Gf"},
    {kFunction_Modf, "G:G>G"},
    {kFunction_Min, "G:GG"},
    {kFunction_Min, "G:Gf"},
    {kFunction_Min, "J:JJ"},
    {kFunction_Min, "J:Ji"},
    {kFunction_Max, "G:GG"},
    {kFunction_Max, "G:Gf"},
    {kFunction_Max, "J:JJ"},
    {kFunction_Max, "J:Ji"},
    {kFunction_Clamp, "G:GGG"},
    {kFunction_Clamp, "G:Gff"},
    {kFunction_Clamp, "J:JJJ"},
    {kFunction_Clamp, "J:Jii"},
    {kFunction_Mix, "G:GGG"},
    {kFunction_Mix, "G:GGf"},
    {kFunction_Mix, "G:GGH"},
    {kFunction_Mix, "J:JJH"},
    {kFunction_Mix, "H:HHH"},
    {kFunction_Step, "G:GG"},
    {kFunction_Step, "G:fG"},
    {kFunction_SmoothStep, "G:GGG"},
    {kFunction_SmoothStep, "G:ffG"},
    {kFunction_IsNan, "H:G"},
    {kFunction_IsInf, "H:G"},
    {kFunction_FloatBitsToInt, "J:G"},
    {kFunction_IntBitsToFloat, "G:J"},
    {kFunction_Fma, "G:GGG"},
    {kFunction_Length, "f:G"},
    {kFunction_Distance, "f:GG"},
    {kFunction_Dot, "f:GG"},
    {kFunction_Cross, "3:33"},
    {kFunction_Normalize, "G:G"},
    {kFunction_FaceForward, "G:GGG"},
    {kFunction_Reflect, "G:GG"},
    {kFunction_Refract, "G:GGf"},
    {kFunction_MatrixCompMult, "M:MM"},
    {kFunction_OuterProduct, "M:VV"},
    {kFunction_Transpose, "M:M"},
    {kFunction_Determinant, "f:M"},
    {kFunction_Inverse, "M:M"},
    {kFunction_LessThan, "L:VV"},
    {kFunction_LessThan, "L:KK"},
    {kFunction_LessThanEqual, "L:VV"},
    {kFunction_LessThanEqual, "L:KK"},
    {kFunction_GreaterThan, "L:VV"},
    {kFunction_GreaterThan, "L:KK"},
    {kFunction_GreaterThanEqual, "L:VV"},
    {kFunction_GreaterThanEqual, "L:KK"},
    {kFunction_VectorEqual, "L:VV"},
    {kFunction_VectorEqual, "L:KK"},
    {kFunction_VectorEqual, "L:LL"},
    {kFunction_VectorNotEqual, "L:VV"},
    {kFunction_VectorNotEqual, "L:KK"},
    {kFunction_VectorNotEqual, "L:LL"},
    {kFunction_Any, "b:L"},
    {kFunction_All, "b:L"},
    {kFunction_Not, "L:L"},
    {kFunction_Texture2D, "4:s2"},
    {kFunction_Texture2D, "4:s2f"},
    {kFunction_TextureSize, "j:s"},
    {kFunction_TextureSize, "j:si"},
    {kFunction_SpawnRay, "v:33"},
    {kFunction_SpawnRay, "v:33f"},
    {kFunction_SpawnRay, "v:33fi"},
    {kFunction_SpawnRay, "v:33fip"},
    {kFunction_Accumulate, "v:if"},
    {kFunction_Accumulate, "v:i3"},
    {kFunction_Accumulate, "v:i4"},
    {kFunction_Occluded, "b:33f"},
    {kFunction_TraceDistance, "f:33f"},
    {kFunction_Random, "f:"},
    {kFunction_Random2, "2:"},
    {kFunction_DiscardRay, "v:"},
};

StageMask GetStageMask(BuiltinFunction function) {
    switch (function) {
    case kFunction_SpawnRay:
    case kFunction_Accumulate:
    case kFunction_Occluded:
    case kFunction_TraceDistance:
    case kFunction_Random:
    case kFunction_Random2:
        return kTracing;
    case kFunction_DiscardRay:
        return kPrefix;
    default:
        return kAll;
    }
}

/// @param size for capitals
Type ReadType(char letter, int size) {
    switch (letter) {
    case 'v':
        return kVoid;
    case 'f':
        return kFloat;
    case 'i':
        return kInt;
    case 'b':
        return kBool;
    case 'p':
        return kPrimitive;
    case 's':
        return MakeScalar(kBase_Sampler2D);
    case 'j':
        return MakeVector(kBase_Int, 2);
    case 'G':
    case 'V':
        return MakeVector(kBase_Float, size);
    case 'J':
    case 'K':
        return MakeVector(kBase_Int, size);
    case 'H':
    case 'L':
        return MakeVector(kBase_Bool, size);
    case 'M':
        return MakeMatrix(size);
    default:
        return MakeVector(kBase_Float, letter - '0');
    }
}

/// All signatures, spelled out and found by name.
class FunctionTable {
public:
    FunctionTable() {
        for (const SignatureText& signature : kSignatures) {
            const std::string_view text = signature.text;
            const bool hasAny = text.find_first_of("GJHVKLM") != std::string_view::npos;
            const bool hasScalars = text.find_first_of("GJH") != std::string_view::npos;
            const int first = hasAny && !hasScalars ? 2 : 1;
            const int last = hasAny ? 4 : 1;
            for (int size = first; size <= last; ++size) {
                _Add(signature.function, text, size);
            }
        }
    }

    std::span<const BuiltinSignature> Find(std::string_view name) const {
        const auto found = _byName.find(name);
        return found == _byName.end() ? std::span<const BuiltinSignature>()
                                      : std::span<const BuiltinSignature>(found->second.signatures);
    }

private:
    struct Entry {
        std::vector<BuiltinSignature> signatures;
        std::vector<std::vector<ParameterShape>> parameters;
    };

    void _Add(BuiltinFunction function, std::string_view text, int size) {
        std::vector<ParameterShape> parameters;
        Direction direction = kDirection_In;
        for (char letter : text.substr(2)) {
            if (letter == '>') {
                direction = kDirection_Out;
                continue;
            }
            parameters.push_back({ReadType(letter, size), direction});
            direction = kDirection_In;
        }
        Entry& entry = _byName[BuiltinFunctionToString(function)];
        // The elements of the inner vectors stay where they are when the outer one grows.
        entry.parameters.push_back(std::move(parameters));
        entry.signatures.push_back({function, ReadType(text[0], size), entry.parameters.back()});
    }

    std::unordered_map<std::string_view, Entry> _byName;
};

struct VariableInfo {
    Type type;
    StageMask stages;
};

VariableInfo GetInfo(BuiltinVariable variable, Stage stage) {
    const Type vec2 = MakeVector(kBase_Float, 2);
    const Type vec3 = MakeVector(kBase_Float, 3);
    switch (variable) {
    case kVariable_OutputRayCount: {
        Type type = kInt;
        type.arrayLength = stage == kStage_Frame ? 0 : 8;
        return {type, kTracing};
    }
    case kVariable_Position:
        return {MakeVector(kBase_Float, 4), kVertex};
    case kVariable_PrimitiveTransformMatrix:
    case kVariable_PrimitiveTransformMatrixInverseTranspose:
        return {MakeMatrix(4), kVertex};
    case kVariable_PixelCoord:
    case kVariable_Resolution:
        return {vec2, kTracing};
    case kVariable_SampleIndex:
    case kVariable_SampleCount:
        return {kInt, kTracing};
    case kVariable_Time:
        return {kFloat, kTracing};
    case kVariable_RayOrigin:
    case kVariable_RayDirection:
    case kVariable_HitPosition:
    case kVariable_HitNormal:
        return {vec3, kHitting};
    case kVariable_RayDepth:
    case kVariable_RayClass:
        return {kInt, kHitting};
    case kVariable_HitDistance:
        return {kFloat, kHitting};
    case kVariable_HitFront:
    case kVariable_Missed:
        return {kBool, kHitting};
    case kVariable_HitBarycentric:
        return {vec2, kHitting};
    case kVariable_HitPrimitive:
        return {kPrimitive, kHitting};
    case kVariable_Count:
        break;
    }
    return {kVoid, 0};
}

std::string ListStages(StageMask stages) {
    std::vector<std::string> names;
    for (Stage stage : {kStage_Frame, kStage_Ray, kStage_Prefix, kStage_Vertex}) {
        if ((stages & MaskOf(stage)) != 0) {
            names.emplace_back(StageToString(stage));
        }
    }
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "" : i + 1 == names.size() ? " and " : ", ";
        text += names[i];
    }
    return text;
}

} // namespace

std::span<const BuiltinSignature> FindBuiltinFunction(std::string_view name) {
    static const FunctionTable table;
    return table.Find(name);
}

bool IsAvailable(BuiltinFunction function, Stage stage) {
    return (GetStageMask(function) & MaskOf(stage)) != 0;
}

bool IsAvailable(BuiltinVariable variable, Stage stage) {
    return (GetInfo(variable, stage).stages & MaskOf(stage)) != 0;
}

bool IsUnsupportedTextureFunction(std::string_view name) {
    static constexpr std::string_view kNames[] = {
        "texture",        "texture3D",     "textureCube",   "texture2DLod", "texture3DLod",
        "textureCubeLod", "texture2DProj", "texture3DProj", "textureLod",   "textureGrad",
        "texelFetch",     "texture1D",     "texture2DGrad", "shadow2D"};
    return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

BuiltinVariable FindBuiltinVariable(std::string_view name) {
    if (!name.starts_with("kl_")) {
        return kVariable_None;
    }
    for (int i = 0; i < kVariable_Count; ++i) {
        if (BuiltinVariableToString(static_cast<BuiltinVariable>(i)) == name) {
            return static_cast<BuiltinVariable>(i);
        }
    }
    return kVariable_None;
}

Type GetBuiltinVariableType(BuiltinVariable variable, Stage stage) {
    return GetInfo(variable, stage).type;
}

bool IsWritable(BuiltinVariable variable) {
    return variable == kVariable_OutputRayCount || variable == kVariable_Position;
}

std::string GetStages(BuiltinFunction function) {
    return ListStages(GetStageMask(function));
}

std::string GetStages(BuiltinVariable variable) {
    return ListStages(GetInfo(variable, kStage_Ray).stages);
}

} // namespace Tolen::OpenKL
