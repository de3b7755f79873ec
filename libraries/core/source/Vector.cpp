#include "TolenCore/Vector.h"

#include <initializer_list>
#include <locale>
#include <ostream>

namespace Tolen {

namespace {

std::ostream& WriteComponents(std::ostream& stream, std::initializer_list<float> components) {
    const std::locale previous = stream.imbue(std::locale::classic());
    const char* lead = "(";
    for (const float component : components) {
        stream << lead << component;
        lead = ",";
    }
    stream << ')';
    stream.imbue(previous);
    return stream;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Vector2f& value) {
    return WriteComponents(stream, {value.x, value.y});
}

std::ostream& operator<<(std::ostream& stream, const Vector3f& value) {
    return WriteComponents(stream, {value.x, value.y, value.z});
}

std::ostream& operator<<(std::ostream& stream, const Vector4f& value) {
    return WriteComponents(stream, {value.x, value.y, value.z, value.w});
}

} // namespace Tolen
