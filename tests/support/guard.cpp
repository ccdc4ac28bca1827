#include "support/guard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace test {

GuardedBuffer::GuardedBuffer(size_t size, At at, uint8_t fill) : size_(size) {
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t inner = (size + page - 1) / page * page;
  mappingSize_ = inner + 2 * page;
  void* mapping = mmap(nullptr, mappingSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) std::abort();
  mapping_ = static_cast<uint8_t*>(mapping);
  if (inner != 0 && mprotect(mapping_ + page, inner, PROT_READ | PROT_WRITE) != 0) std::abort();
  data_ = at == At::end ? mapping_ + page + inner - size : mapping_ + page;
  if (size != 0) std::memset(data_, fill, size);
}

GuardedBuffer::GuardedBuffer(std::span<const uint8_t> bytes, At at) : GuardedBuffer(bytes.size(), at) {
  if (!bytes.empty()) std::memcpy(data_, bytes.data(), bytes.size());
}

GuardedBuffer::~GuardedBuffer() { munmap(mapping_, mappingSize_); }

std::vector<uint8_t> fromHex(std::string_view text) {
  std::vector<uint8_t> bytes;
  std::string digits;
  for (const char c : text) {
    if (c == ' ') continue;
    digits += c;
    if (digits.size() == 2) {
      bytes.push_back(static_cast<uint8_t>(std::stoul(digits, nullptr, 16)));
      digits.clear();
    }
  }
  if (!digits.empty()) std::abort();
  return bytes;
}

std::string toHex(std::span<const uint8_t> bytes) {
  static const char digits[] = "0123456789ABCDEF";
  std::string text;
  for (const uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace test
