#pragma once

namespace Tolen::Tests {

#if defined(__has_feature)
#define TOLEN_HAS_FEATURE(feature) __has_feature(feature)
#else
#define TOLEN_HAS_FEATURE(feature) false
#endif

/// Whether the thread sanitizer watches.
#if defined(__SANITIZE_THREAD__)
constexpr bool kIsThreadSanitized = true;
#else
constexpr bool kIsThreadSanitized = TOLEN_HAS_FEATURE(thread_sanitizer);
#endif

/// Whether the address sanitizer watches.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsAddressSanitized = true;
#else
constexpr bool kIsAddressSanitized = TOLEN_HAS_FEATURE(address_sanitizer);
#endif

#undef TOLEN_HAS_FEATURE

} // namespace Tolen::Tests
