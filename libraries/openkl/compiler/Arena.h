#pragma once

#include <cstddef>
#include <memory_resource>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Tolen::OpenKL {

/// Owns the nodes of one compiled text. Nodes are plain data without destructors, so that however
/// deep a tree is, giving it up is freeing a few blocks.
class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    template <class T, class... Arguments>
    T* New(Arguments&&... arguments) {
        static_assert(std::is_trivially_destructible_v<T>, "nothing runs when the arena dies");
        return ::new (_memory.allocate(sizeof(T), alignof(T)))
            T(std::forward<Arguments>(arguments)...);
    }

    /// An array of @p count value-initialised elements; empty for 0.
    template <class T>
    std::span<T> NewArray(std::size_t count) {
        static_assert(std::is_trivially_destructible_v<T>, "nothing runs when the arena dies");
        if (count == 0) {
            return {};
        }
        T* elements = static_cast<T*>(_memory.allocate(count * sizeof(T), alignof(T)));
        for (std::size_t i = 0; i < count; ++i) {
            ::new (elements + i) T();
        }
        return {elements, count};
    }

    /// A copy of the elements of a container.
    template <class Container>
    auto Copy(const Container& source) {
        using T = std::remove_cvref_t<decltype(*std::begin(source))>;
        std::span<T> copy = NewArray<T>(std::size(source));
        std::size_t i = 0;
        for (const T& element : source) {
            copy[i++] = element;
        }
        return copy;
    }

    /// A copy of a text that lives as long as the arena.
    std::string_view CopyText(std::string_view text) {
        std::span<char> copy = Copy(text);
        return {copy.data(), copy.size()};
    }

private:
    std::pmr::monotonic_buffer_resource _memory{4096};
};

} // namespace Tolen::OpenKL
