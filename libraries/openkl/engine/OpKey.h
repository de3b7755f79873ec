#pragma once

#include "engine/Ir.h"

namespace Tolen::OpenKL {

/// What makes two ops the same.
struct OpKey {
    IrKind kind;
    Operation operation;
    std::array<ValueId, 3> arguments;
    std::uint32_t index;
    std::uint32_t word;
    std::uint32_t extra;

    explicit OpKey(const IrOp& op)
        : kind(op.kind), operation(op.operation), arguments(op.arguments), index(op.index),
          word(op.word), extra(op.extra) {}
    bool operator==(const OpKey&) const = default;
};

struct OpKeyHash {
    std::size_t operator()(const OpKey& key) const {
        std::uint64_t hash =
            static_cast<std::uint64_t>(key.kind) << 16 | static_cast<std::uint64_t>(key.operation);
        for (std::uint32_t part : {key.arguments[0], key.arguments[1], key.arguments[2], key.index,
                                   key.word, key.extra}) {
            hash = (hash ^ part) * 0x9e3779b97f4a7c15ull;
            hash ^= hash >> 29;
        }
        return static_cast<std::size_t>(hash);
    }
};

} // namespace Tolen::OpenKL
