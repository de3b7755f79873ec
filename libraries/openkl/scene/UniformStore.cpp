#include "scene/UniformStore.h"

#include "compiler/LinkedProgram.h"
#include "scene/Buffer.h"
#include "scene/ObjectRegistry.h"
#include "scene/Program.h"
#include "scene/TexImage2D.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace Tolen::OpenKL {

namespace {

std::uint32_t ToWord(float value) {
    return std::bit_cast<std::uint32_t>(value);
}
std::uint32_t ToWord(int value) {
    return static_cast<std::uint32_t>(value);
}
std::uint32_t ToWord(bool value) {
    return value ? 1 : 0;
}
std::uint32_t ToWord(KLprimitive value) {
    return static_cast<std::uint32_t>(value);
}
std::uint32_t ToWord(KLtexture value) {
    return TexImage2D::ToNumber(value);
}

/// How a client's type looks to shading code: the shape, the words, and each component.
template <class T>
struct Shape;

template <class T, BaseType base>
struct ScalarShape {
    using Component = T;
    static constexpr Type type = MakeScalar(base);
    static T Get(const T& value, int) { return value; }
};
template <>
struct Shape<float> : ScalarShape<float, kBase_Float> {};
template <>
struct Shape<int> : ScalarShape<int, kBase_Int> {};
template <>
struct Shape<bool> : ScalarShape<bool, kBase_Bool> {};
template <>
struct Shape<KLprimitive> : ScalarShape<KLprimitive, kBase_Primitive> {};
template <>
struct Shape<KLtexture> : ScalarShape<KLtexture, kBase_Sampler2D> {};

template <class T, class C, BaseType base, int rows>
struct VectorShape {
    using Component = C;
    static constexpr Type type = MakeVector(base, rows);
    static_assert(sizeof(T) == rows * sizeof(C));
    static C Get(const T& value, int i) {
        return std::bit_cast<std::array<C, rows>>(value)[static_cast<std::size_t>(i)];
    }
};
template <>
struct Shape<Vector2f> : VectorShape<Vector2f, float, kBase_Float, 2> {};
template <>
struct Shape<Vector3f> : VectorShape<Vector3f, float, kBase_Float, 3> {};
template <>
struct Shape<Vector4f> : VectorShape<Vector4f, float, kBase_Float, 4> {};
template <>
struct Shape<Vector2i> : VectorShape<Vector2i, int, kBase_Int, 2> {};
template <>
struct Shape<Vector3i> : VectorShape<Vector3i, int, kBase_Int, 3> {};
template <>
struct Shape<Vector4i> : VectorShape<Vector4i, int, kBase_Int, 4> {};

template <class T, int size>
struct MatrixShape {
    using Component = float;
    static constexpr Type type = MakeMatrix(size);
    static float Get(const T& value, int i) { return value.m[i]; }
};
template <>
struct Shape<Matrix33f> : MatrixShape<Matrix33f, 3> {};
template <>
struct Shape<Matrix44f> : MatrixShape<Matrix44f, 4> {};

Type WithoutArray(Type type) {
    type.arrayLength = 0;
    return type;
}

/// Whether a value of type @p given may be written where @p wanted is declared.
bool Fits(const Type& given, const Type& wanted) {
    if (given == kInt || (given.IsVector() && given.base == kBase_Int)) {
        return wanted == given || wanted == MakeVector(kBase_Float, given.rows);
    }
    if (given.IsSampler()) {
        return wanted.IsSampler();
    }
    return wanted == given;
}

/// Finds what the array or variable @p name of the type had in @p from.
const std::uint32_t* FindWords(const LinkedCode* from, const std::vector<std::uint32_t>& words,
                               const LinkedUniform& wanted) {
    const int location = from == nullptr ? -1 : from->program->GetUniformLocation(wanted.name);
    if (location < 0) {
        return nullptr;
    }
    const auto index = static_cast<std::size_t>(location);
    if (!AreSameAcrossTexts(from->program->uniforms[index].type, wanted.type)) {
        return nullptr;
    }
    return words.data() + from->main->GetLayout().uniforms[index].firstWord;
}

} // namespace

void UniformStore::Adopt(const std::shared_ptr<const LinkedCode>& code) {
    if (code == _pCode) {
        return;
    }
    _version = MakeStamp();
    std::vector<std::uint32_t> words;
    std::vector<int> samplerWords;
    std::vector<std::shared_ptr<const BufferContent>> blocks;
    if (code != nullptr) {
        const KernelLayout& layout = code->main->GetLayout();
        words.resize(static_cast<std::size_t>(layout.uniformWords));
        for (std::size_t i = 0; i < code->program->uniforms.size(); ++i) {
            const LinkedUniform& uniform = code->program->uniforms[i];
            const KernelVariable& place = layout.uniforms[i];
            if (const std::uint32_t* const pOld = FindWords(_pCode.get(), _words, uniform)) {
                std::copy_n(pOld, place.wordCount, words.begin() + place.firstWord);
            }
            if (WithoutArray(uniform.type).IsSampler()) {
                for (int word = 0; word < place.wordCount; ++word) {
                    samplerWords.push_back(place.firstWord + word);
                }
            }
        }
        blocks.resize(code->program->blocks.size());
        for (std::size_t i = 0; i < blocks.size() && _pCode != nullptr; ++i) {
            const int old = _pCode->program->GetUniformBlockLocation(code->program->blocks[i].name);
            blocks[i] = old < 0 ? nullptr : _blocks[static_cast<std::size_t>(old)];
        }
    }
    _words = std::move(words);
    _samplerWords = std::move(samplerWords);
    _blocks = std::move(blocks);
    _pCode = code;
}

template <class T>
bool UniformStore::Write(int location, int count, const T* values) {
    if (_pCode == nullptr || values == nullptr || count <= 0 || location < 0 ||
        static_cast<std::size_t>(location) >= _pCode->program->uniforms.size()) {
        return false;
    }
    const auto index = static_cast<std::size_t>(location);
    const Type& declared = _pCode->program->uniforms[index].type;
    const Type element = WithoutArray(declared);
    if (!Fits(Shape<T>::type, element) || count > std::max(declared.arrayLength, 1)) {
        return false;
    }
    constexpr int components = Shape<T>::type.columns * Shape<T>::type.rows;
    std::uint32_t* pWord = _words.data() + _pCode->main->GetLayout().uniforms[index].firstWord;
    for (int i = 0; i < count; ++i) {
        for (int c = 0; c < components; ++c, ++pWord) {
            const auto component = Shape<T>::Get(values[i], c);
            if constexpr (std::is_same_v<typename Shape<T>::Component, int>) {
                *pWord = element.base == kBase_Float ? ToWord(static_cast<float>(component))
                                                     : ToWord(component);
            } else {
                *pWord = ToWord(component);
            }
        }
    }
    _version = MakeStamp();
    return true;
}

#define TOLEN_INSTANTIATE_WRITE(T) template bool UniformStore::Write(int, int, const T*);
TOLEN_UNIFORM_TYPES(TOLEN_INSTANTIATE_WRITE)
#undef TOLEN_INSTANTIATE_WRITE

bool UniformStore::SetBlock(int location, const Buffer* buffer) {
    if (location < 0 || static_cast<std::size_t>(location) >= _blocks.size()) {
        return false;
    }
    _blocks[static_cast<std::size_t>(location)] =
        buffer == nullptr ? nullptr : buffer->GetContent();
    _version = MakeStamp();
    return true;
}

std::uint64_t UniformStore::GetVersion() const {
    std::uint64_t version = _version;
    for (const auto& block : _blocks) {
        version = std::max(version, block == nullptr ? 0 : block->version);
    }
    return version;
}

} // namespace Tolen::OpenKL
