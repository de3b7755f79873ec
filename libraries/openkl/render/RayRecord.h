#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

/// A ray that has been traced and waits for the program of what it reached.
struct RayRecord {
    static constexpr std::uint32_t kMissed = 0xffffffffu;

    float origin[3];
    float direction[3]; ///< unit
    float maxDistance;  ///< finite
    float pixelCoord[2];
    std::uint16_t pixelX; ///< in the tile
    std::uint16_t pixelY;
    std::int32_t sample;
    std::uint32_t randomSeed;
    std::int32_t depth;
    std::int32_t rayClass;

    float coneWidth;  ///< at the origin
    float coneSpread; ///< added for each unit of distance

    // What it reached.
    std::uint32_t primitive; ///< index in the plan
    std::uint32_t triangle;  ///< kMissed on a miss primitive
    float u, v;
    float distance;
};

/// Rays with the attributes that each carries.
class RayList {
public:
    explicit RayList(int attributeWords) : _stride(static_cast<std::size_t>(attributeWords)) {}

    std::size_t GetCount() const { return _records.size(); }
    RayRecord& GetRecord(std::size_t index) { return _records[index]; }
    const RayRecord& GetRecord(std::size_t index) const { return _records[index]; }
    std::uint32_t* GetAttributes(std::size_t index) { return _attributes.data() + index * _stride; }
    const std::uint32_t* GetAttributes(std::size_t index) const {
        return _attributes.data() + index * _stride;
    }

    /// Adds a ray; its attributes copy @p attributes, or are 0 for null.
    RayRecord& Add(const RayRecord& record, const std::uint32_t* attributes) {
        _records.push_back(record);
        if (attributes == nullptr) {
            _attributes.resize(_attributes.size() + _stride);
        } else {
            _attributes.insert(_attributes.end(), attributes, attributes + _stride);
        }
        return _records.back();
    }

    void Truncate(std::size_t count) {
        _records.resize(count);
        _attributes.resize(count * _stride);
    }

    /// Takes the newest @p count rays of @p from, in their order, in the place of its own.
    void TakeNewest(RayList& from, std::size_t count) {
        const std::size_t kept = from.GetCount() - count;
        _records.assign(from._records.begin() + static_cast<std::ptrdiff_t>(kept),
                        from._records.end());
        _attributes.assign(from._attributes.begin() + static_cast<std::ptrdiff_t>(kept * _stride),
                           from._attributes.end());
        from.Truncate(kept);
    }

private:
    std::size_t _stride;
    std::vector<RayRecord> _records;
    std::vector<std::uint32_t> _attributes;
};

} // namespace Tolen::OpenKL
