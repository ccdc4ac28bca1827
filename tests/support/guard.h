// Buffers whose first or last byte touches a page that can't be accessed: a byte outside is a crash at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class GuardedBuffer {
 public:
  enum class At { end, start };
  // `size` bytes that end (or begin) at a guard page, filled with `fill`.
  explicit GuardedBuffer(size_t size, At at = At::end, uint8_t fill = 0xCD);
  GuardedBuffer(std::span<const uint8_t> bytes, At at = At::end);
  ~GuardedBuffer();
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  uint8_t* data() { return data_; }
  size_t size() const { return size_; }
  std::span<uint8_t> bytes() { return {data_, size_}; }

 private:
  uint8_t* mapping_;
  size_t mappingSize_;
  uint8_t* data_;
  size_t size_;
};

// Bytes of a text of hexadecimal digits; blanks are skipped.
std::vector<uint8_t> fromHex(std::string_view text);
// The reverse, upper case, with blanks between bytes.
std::string toHex(std::span<const uint8_t> bytes);

}  // namespace test
