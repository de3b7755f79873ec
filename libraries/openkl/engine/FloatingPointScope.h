#pragma once

#include <xmmintrin.h>

namespace Tolen::OpenKL {

/// Rounding to nearest, denormals as zero and no traps for as long as it lives; then everything is
/// as it was.
class FloatingPointScope {
public:
    FloatingPointScope() : _before(_mm_getcsr()) {
        _mm_setcsr(kMasked | kFlushToZero | kDenormalsAreZero);
    }
    ~FloatingPointScope() { _mm_setcsr(_before); }
    FloatingPointScope(const FloatingPointScope&) = delete;
    FloatingPointScope& operator=(const FloatingPointScope&) = delete;

private:
    static constexpr unsigned kMasked = 0x1f80;
    static constexpr unsigned kFlushToZero = 0x8000;
    static constexpr unsigned kDenormalsAreZero = 0x0040;

    unsigned _before;
};

} // namespace Tolen::OpenKL
