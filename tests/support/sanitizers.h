// Which sanitizers the tests are compiled with, in the words of either compiler.
#pragma once

namespace test {

#ifdef __has_feature
#define VELDNLS_HAS_FEATURE(name) __has_feature(name)
#else
#define VELDNLS_HAS_FEATURE(name) 0
#endif

#if defined(__SANITIZE_THREAD__) || VELDNLS_HAS_FEATURE(thread_sanitizer)
inline constexpr bool threadSanitizer = true;
#else
inline constexpr bool threadSanitizer = false;
#endif

#if defined(__SANITIZE_ADDRESS__) || VELDNLS_HAS_FEATURE(address_sanitizer)
inline constexpr bool addressSanitizer = true;
#else
inline constexpr bool addressSanitizer = false;
#endif

#undef VELDNLS_HAS_FEATURE

}  // namespace test
