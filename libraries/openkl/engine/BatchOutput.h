#pragma once

#include "engine/Batch.h"

#include <memory>
#include <utility>

namespace Tolen::OpenKL {

/// Growing storage of plain records, filled by the executor through raw pointers so that its
/// translation units instantiate nothing of the standard library.
template <class T>
class RecordBuffer {
public:
    const T* begin() const { return _pRecords.get(); }
    const T* end() const { return _pRecords.get() + _count; }
    const T& operator[](std::size_t index) const { return _pRecords[index]; }
    std::size_t GetCount() const { return _count; }
    void Clear() { _count = 0; }
    void Truncate(std::size_t count) { _count = count < _count ? count : _count; }

    /// Makes room for @p more records behind the last and answers where they start.
    T* Reserve(std::size_t more) {
        if (_capacity - _count < more) {
            _Grow(_count + more);
        }
        return _pRecords.get() + _count;
    }
    /// Keeps the first @p more of the records that were written behind the last.
    void Append(std::size_t more) { _count += more; }

private:
    void _Grow(std::size_t least) {
        std::size_t capacity = _capacity * 2 < least ? least : _capacity * 2;
        std::unique_ptr<T[]> pRecords(new T[capacity]);
        for (std::size_t i = 0; i < _count; ++i) {
            pRecords[i] = _pRecords[i];
        }
        _pRecords = std::move(pRecords);
        _capacity = capacity;
    }

    std::unique_ptr<T[]> _pRecords;
    std::size_t _count = 0;
    std::size_t _capacity = 0;
};

/// What the invocations of a batch gave. Run clears it, so that one object serves many batches.
///
/// Records of one lane stand in the order in which its code made them. The order does not depend
/// on the instruction set, and for one lane not on the lanes beside it.
class BatchOutput {
public:
    RecordBuffer<AccumulateRecord> accumulates;
    RecordBuffer<SpawnedRay> rays;
    /// KernelLayout::rayAttributeWords words for each ray, from SpawnedRay::attributes on.
    RecordBuffer<std::uint32_t> rayAttributes;

    /// Vertex stage: kl_Position and then every word of KernelLayout::varyings, one row of
    /// kMaxLanes words each; the rows of a kernel without these outputs are null.
    RecordBuffer<std::uint32_t> vertexRows;
    const void* GetPosition(int component) const {
        return vertexRows.begin() + static_cast<std::ptrdiff_t>(component) * kMaxLanes;
    }
    const void* GetVarying(int word) const {
        return vertexRows.begin() + (static_cast<std::ptrdiff_t>(word) + 4) * kMaxLanes;
    }

    /// Prefix stage: the ray attributes as main left them for the program that runs next on the
    /// ray, one row of kMaxLanes words for each word of KernelLayout::rayAttributes. Empty for
    /// other stages.
    RecordBuffer<std::uint32_t> passedAttributes;
    const void* GetPassedAttribute(int word) const {
        return passedAttributes.begin() + static_cast<std::ptrdiff_t>(word) * kMaxLanes;
    }

    /// 1 for each lane that called discardRay, otherwise 0.
    std::uint32_t discarded[kMaxLanes] = {};
    bool hasDiscarded = false;

    /// Rays above kl_OutputRayCount that were not spawned.
    std::uint64_t droppedRays = 0;

    /// Values and rays above kMaxBatchRecords.
    std::uint64_t surplusAccumulates = 0;
    std::uint64_t surplusRays = 0;

    /// Invocations that ended at the limit of loop steps; what they had given before stays.
    std::uint32_t stoppedInvocations = 0;
    /// Where the first of them was, when there is one.
    std::int32_t stoppedText = 0;
    std::int32_t stoppedLine = 0;
};

} // namespace Tolen::OpenKL
