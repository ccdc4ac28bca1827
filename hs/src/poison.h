// What AddressSanitizer may know of pool memory: bytes that belong to the allocator (free blocks, never-used memory,
// block headers) are closed, bytes that a caller holds are open. Without the sanitizer all of this is nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#define VELDNLS_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELDNLS_ADDRESS_SANITIZER
#endif
#endif

#ifdef VELDNLS_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace veldnls::hs {

#ifdef VELDNLS_ADDRESS_SANITIZER
inline void closeMemory(const void* address, size_t size) { __asan_poison_memory_region(address, size); }
inline void openMemory(const void* address, size_t size) { __asan_unpoison_memory_region(address, size); }
inline bool isClosed(const void* address) { return __asan_address_is_poisoned(address) != 0; }
#else
inline void closeMemory(const void* /*address*/, size_t /*size*/) {}
inline void openMemory(const void* /*address*/, size_t /*size*/) {}
inline bool isClosed(const void* /*address*/) { return false; }
#endif

// The allocator's own words in closed memory. A caller's error can lead a read to open memory, which then stays open.
template <class T>
T readClosed(const uint8_t* at) {
  const bool closed = isClosed(at);
  openMemory(at, sizeof(T));
  T value;
  std::memcpy(&value, at, sizeof value);
  if (closed) closeMemory(at, sizeof(T));
  return value;
}

template <class T>
void writeClosed(uint8_t* at, const T& value) {
  openMemory(at, sizeof(T));
  std::memcpy(at, &value, sizeof value);
  closeMemory(at, sizeof(T));
}

}  // namespace veldnls::hs
