#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Tolen::OpenKL {

struct StructType;

/// What the components of a value are. Samplers and primitives are handles: scalars that can be
/// copied, passed and stored; 0 is the handle of nothing.
enum BaseType : std::uint8_t {
    kBase_Void,
    kBase_Float,
    kBase_Int,
    kBase_Bool,
    kBase_Sampler2D,
    kBase_Sampler3D,
    kBase_SamplerCube,
    kBase_Primitive,
    kBase_Struct,
};

/// The type of a value: a scalar, a vector, a square matrix, a handle or a struct, or an array of
/// one of these. Arrays have one dimension; a struct may hold arrays.
struct Type {
    BaseType base = kBase_Void;
    std::uint8_t columns = 1;              ///< 2 to 4 for matrices
    std::uint8_t rows = 1;                 ///< components of a vector or of a matrix column
    std::int32_t arrayLength = 0;          ///< 0 when it is no array
    const StructType* structure = nullptr; ///< for kBase_Struct alone

    bool IsVoid() const { return base == kBase_Void; }
    bool IsArray() const { return arrayLength != 0; }
    bool IsStruct() const { return base == kBase_Struct && !IsArray(); }
    bool IsMatrix() const { return columns > 1 && !IsArray(); }
    bool IsVector() const { return columns == 1 && rows > 1 && !IsArray(); }
    bool IsScalar() const { return IsNumericOrBool() && columns == 1 && rows == 1; }
    bool IsSampler() const {
        return base >= kBase_Sampler2D && base <= kBase_SamplerCube && !IsArray();
    }
    bool IsPrimitive() const { return base == kBase_Primitive && !IsArray(); }
    bool IsHandle() const { return IsSampler() || IsPrimitive(); }
    /// A scalar, vector or matrix.
    bool IsNumericOrBool() const { return base >= kBase_Float && base <= kBase_Bool && !IsArray(); }

    /// The type that a subscript gives: of an array its element, of a matrix its column, of a
    /// vector its component.
    Type GetElement() const;
    /// How many elements a subscript can reach; 0 for types without subscripts.
    int GetElementCount() const;

    /// The scalars of a value in memory order: arrays element by element, matrices column by
    /// column, structs field by field.
    int CountScalars() const;

    /// The spelling in source, such as "vec3" or "float[4]".
    std::string ToString() const;

    friend bool operator==(const Type&, const Type&) = default;
};

/// A field of a struct.
struct StructField {
    std::string_view name;
    Type type;
    int offset = 0; ///< in scalars from the start of the struct
    int line = 0;
};

/// A struct as one text declares it.
struct StructType {
    std::string_view name; ///< empty for a struct without a name
    std::span<const StructField> fields;
    int scalarCount = 0;
    int line = 0;

    /// @return -1 when there is no such field
    int FindField(std::string_view fieldName) const;
};

inline constexpr Type kVoid{};
constexpr Type MakeScalar(BaseType base) {
    return {.base = base};
}
/// @param rows 1 for a scalar
constexpr Type MakeVector(BaseType base, int rows) {
    return {.base = base, .rows = static_cast<std::uint8_t>(rows)};
}
constexpr Type MakeMatrix(int size) {
    return {.base = kBase_Float,
            .columns = static_cast<std::uint8_t>(size),
            .rows = static_cast<std::uint8_t>(size)};
}
inline constexpr Type kFloat = MakeScalar(kBase_Float);
inline constexpr Type kInt = MakeScalar(kBase_Int);
inline constexpr Type kBool = MakeScalar(kBase_Bool);
inline constexpr Type kPrimitive = MakeScalar(kBase_Primitive);

/// Whether two types are the same also when they come from two texts: structs then agree in name
/// and in every field.
bool AreSameAcrossTexts(const Type& a, const Type& b);

} // namespace Tolen::OpenKL
