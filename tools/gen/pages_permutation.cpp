#include "pages_permutation.h"

#include <array>
#include <optional>

#include "text.h"

namespace gen::pages {

namespace {

constexpr size_t byteCount = 256;
constexpr uint32_t lastByte = 0xFF;
using Bytes = std::array<std::optional<uint8_t>, byteCount>;

void set(const Line& line, Bytes& bytes, uint32_t index, uint32_t value) {
  require(!bytes[index], line.place, "byte " + hex(index, 2) + " stands in a line above; a permutation has it once");
  bytes[index] = static_cast<uint8_t>(value);
}

void save(const std::string& path, const Bytes& bytes) {
  Output output(path);
  output.list(byteCount, [&](size_t i) { return hex(*bytes[i], 2); });
  output.save();
}

}  // namespace

void makePermutation(const std::string& data, const std::string& out) {
  const std::string file = data + "/utf_ebcdic/permutation.tsv";
  Bytes outward;
  Bytes inward;
  size_t count = 0;
  for (const Line& line : readLines(file)) {
    const uint32_t i8 = parseHex(line, line.field(0), lastByte);
    const uint32_t ebcdic = parseHex(line, line.field(1), lastByte);
    set(line, outward, i8, ebcdic);
    set(line, inward, ebcdic, i8);
    ++count;
  }
  require(count == byteCount, {file, 0}, "a permutation of bytes has 256 lines; restore the missing ones");
  require(*outward['A'] == 0xC1, {file, 0}, "\"A\" must be C1");
  require(*outward[0xC5] == 0x80 && *outward[0xA0] == 0x41, {file, 0}, "U+00A0, I8 C5 A0, must be 80 41");
  save(out + "/pages/i8_to_ebcdic.inc", outward);
  save(out + "/pages/ebcdic_to_i8.inc", inward);
}

}  // namespace gen::pages
