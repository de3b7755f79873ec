#include "ValueText.h"

#include "TolenEffects/ElementTypes.h"

#include <locale>
#include <sstream>

namespace Tolen::Effects {

class IShader;

namespace {

template <class T>
void Insert(std::ostream& stream, const T& element) {
    stream << element;
}

void Insert(std::ostream& stream, KLprimitive element) {
    stream << static_cast<int>(element);
}

void Insert(std::ostream& stream, KLtexture element) {
    stream << static_cast<const void*>(element);
}

void Insert(std::ostream& stream, IShader* element) {
    stream << static_cast<const void*>(element);
}

void Insert(std::ostream& stream, const Vector2i& element) {
    stream << '(' << element.x << ',' << element.y << ')';
}

void Insert(std::ostream& stream, const Vector3i& element) {
    stream << '(' << element.x << ',' << element.y << ',' << element.z << ')';
}

void Insert(std::ostream& stream, const Vector4i& element) {
    stream << '(' << element.x << ',' << element.y << ',' << element.z << ',' << element.w << ')';
}

} // namespace

template <class T>
std::string ElementToString(const T& element) {
    std::stringstream stream;
    stream.imbue(std::locale::classic());
    Insert(stream, element);
    return stream.str();
}

#define TOLEN_INSTANTIATE(specifier, T, name, bytes)                                               \
    template std::string ElementToString(const T& element);
TOLEN_ELEMENT_TYPES(TOLEN_INSTANTIATE)
#undef TOLEN_INSTANTIATE
template std::string ElementToString(const std::string& element);
template std::string ElementToString(IShader* const& element);

} // namespace Tolen::Effects
