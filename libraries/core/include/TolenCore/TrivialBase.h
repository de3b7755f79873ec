#pragma once

namespace Tolen {

/// Names an allocator where an operation asks for one; every such operation uses the process's
/// heap.
struct AllocationDummy {};

/// A marker base for objects that allocate nothing but themselves. It holds nothing.
/// @tparam Allocation names the allocator
template <class Allocation>
class TrivialBase {};

} // namespace Tolen
