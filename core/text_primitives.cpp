#include "core/text_primitives.h"

#include <cstring>
#include <utility>

#include "core/wide_text.h"

namespace veldnls {
namespace {

template <class Unit>
int32_t terminatedLength(const Unit* text) {
  int32_t length = 0;
  if (text == nullptr) return length;
  while (text[length] != 0) ++length;
  return length;
}

template <class Unit>
bool allEqual(Unit value, const Unit* data, int64_t count) {
  for (int64_t i = 0; i < count; ++i) {
    if (data[i] != value) return false;
  }
  return true;
}

template <class Unit>
NlsStatus reverse(Unit* data, int64_t count) {
  for (int64_t i = 0; i < count / 2; ++i) std::swap(data[i], data[count - 1 - i]);
  return 0;
}

}  // namespace

int32_t nlsNarrowLength(const char* text) { return terminatedLength(text); }

int32_t nlsWideLength(const char16_t* text) { return terminatedLength(text); }

void nlsCopyBytes(const void* source, void* target, int64_t count) {
  const auto* from = static_cast<const uint8_t*>(source);
  auto* to = static_cast<uint8_t*>(target);
  for (int64_t i = 0; i < count; ++i) to[i] = from[i];
}

void nlsMoveBytes(const void* source, void* target, int64_t count) {
  if (count > 0) std::memmove(target, source, static_cast<size_t>(count));
}

bool nlsAllBytesEqual(uint32_t value, const void* data, int64_t count) {
  return allEqual(static_cast<uint8_t>(value), static_cast<const uint8_t*>(data), count);
}

bool nlsAllWideEqual(uint32_t value, const char16_t* data, int64_t count) {
  return allEqual(static_cast<char16_t>(value), data, count);
}

NlsStatus nlsReverseBytes(void* data, int64_t length) { return reverse(static_cast<uint8_t*>(data), length); }

NlsStatus nlsReverseWide(char16_t* data, int64_t count) { return reverse(data, count); }

void nlsFillWide(char16_t* data, char16_t value, int64_t count) {
  for (int64_t i = 0; i < count; ++i) data[i] = value;
}

int32_t nlsTrimTrailingBlanks(const char16_t* data, int32_t count) { return wideTrimRight(data, count, 0); }

}  // namespace veldnls
