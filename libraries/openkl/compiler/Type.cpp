#include "compiler/Type.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

std::string ElementToString(const Type& type) {
    const std::string rows = std::to_string(static_cast<int>(type.rows));
    switch (type.base) {
    case kBase_Void:
        return "void";
    case kBase_Float:
        return type.columns > 1 ? "mat" + rows : type.rows > 1 ? "vec" + rows : "float";
    case kBase_Int:
        return type.rows > 1 ? "ivec" + rows : "int";
    case kBase_Bool:
        return type.rows > 1 ? "bvec" + rows : "bool";
    case kBase_Sampler2D:
        return "sampler2D";
    case kBase_Sampler3D:
        return "sampler3D";
    case kBase_SamplerCube:
        return "samplerCube";
    case kBase_Primitive:
        return "primitive";
    case kBase_Struct:
        return type.structure->name.empty() ? "struct" : std::string(type.structure->name);
    }
    return {};
}

} // namespace

Type Type::GetElement() const {
    Type element = *this;
    if (IsArray()) {
        element.arrayLength = 0;
    } else if (columns > 1) {
        element.columns = 1;
    } else {
        element.rows = 1;
    }
    return element;
}

int Type::GetElementCount() const {
    if (IsArray()) {
        return arrayLength;
    }
    return IsMatrix() ? columns : IsVector() ? rows : 0;
}

int Type::CountScalars() const {
    if (base == kBase_Void) {
        return 0;
    }
    const int ofElement = base == kBase_Struct ? structure->scalarCount : columns * rows;
    return IsArray() ? ofElement * arrayLength : ofElement;
}

std::string Type::ToString() const {
    std::string text = ElementToString(*this);
    if (IsArray()) {
        text += "[" + std::to_string(arrayLength) + "]";
    }
    return text;
}

int StructType::FindField(std::string_view fieldName) const {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].name == fieldName) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool AreSameAcrossTexts(const Type& a, const Type& b) {
    if (a.base != b.base || a.columns != b.columns || a.rows != b.rows ||
        a.arrayLength != b.arrayLength) {
        return false;
    }
    if (a.base != kBase_Struct || a.structure == b.structure) {
        return true;
    }
    return a.structure->name == b.structure->name &&
           std::equal(a.structure->fields.begin(), a.structure->fields.end(),
                      b.structure->fields.begin(), b.structure->fields.end(),
                      [](const StructField& x, const StructField& y) {
                          return x.name == y.name && AreSameAcrossTexts(x.type, y.type);
                      });
}

} // namespace Tolen::OpenKL
