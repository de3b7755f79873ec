#pragma once

#include "TolenOpenKLWrapper/UniformTypes.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Tolen::OpenKL {

class Buffer;
struct BufferContent;
struct LinkedCode;

/// The uniform values of one primitive, laid out as its program wants them.
///
/// After a change of the program, values stay with uniforms of the same name and type; all others
/// are zero.
class UniformStore {
public:
    /// Lays the values out for @p code; null takes them away.
    void Adopt(const std::shared_ptr<const LinkedCode>& code);
    const std::shared_ptr<const LinkedCode>& GetCode() const { return _pCode; }

    /// Writes @p count elements from the first on.
    /// @return false, and no change, for an unknown location, another type than T, integers for
    ///         floats of the same shape excepted, null values, or more elements than there are
    template <class T>
    bool Write(int location, int count, const T* values);

    /// @param buffer null for none
    bool SetBlock(int location, const Buffer* buffer);

    /// The words as written; samplers hold the numbers of their images.
    const std::vector<std::uint32_t>& GetWords() const { return _words; }
    /// The words that hold samplers.
    const std::vector<int>& GetSamplerWords() const { return _samplerWords; }
    const std::vector<std::shared_ptr<const BufferContent>>& GetBlocks() const { return _blocks; }

    /// The stamp of the last change, also in the content of the buffers.
    std::uint64_t GetVersion() const;

private:
    std::shared_ptr<const LinkedCode> _pCode;
    std::vector<std::uint32_t> _words;
    std::vector<int> _samplerWords;
    std::vector<std::shared_ptr<const BufferContent>> _blocks; ///< null for none
    std::uint64_t _version = 0;
};

} // namespace Tolen::OpenKL
