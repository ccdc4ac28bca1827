#include "utf_ebcdic_scan.h"

#include <algorithm>

#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr char32_t firstOfTwoBytes = 0xA0;
constexpr size_t mostBytes = 5;
constexpr uint8_t firstTrail = 0xA0;
constexpr unsigned trailBits = 5;

// Lead bytes of characters of so many bytes, in the form below EBCDIC, and how many they are.
struct Leads {
  uint8_t first;
  uint8_t count;
  size_t length;
  char32_t lowest;  // character of that length
};

constexpr std::array<Leads, 4> leads{
    {{0xC0, 32, 2, 0xA0}, {0xE0, 16, 3, 0x400}, {0xF0, 8, 4, 0x4000}, {0xF8, 2, 5, 0x40000}}};

std::array<uint8_t, roomOfACharacter> write(TranscodingPipeline& fromUtf32, char32_t character) {
  std::array<uint8_t, roomOfACharacter> output{};
  convertShort(fromUtf32, {reinterpret_cast<const uint8_t*>(&character), sizeof character}, output);
  return output;
}

}  // namespace

UtfEbcdicScan::UtfEbcdicScan(QZNLS& nls) {
  lengths_.fill(1);
  const Pipeline fromUtf32 = makePipeline(nls, U_L_UCS4_CE, U_UTFE_CE);
  if (fromUtf32 == nullptr) return;
  for (char32_t c = 0; c < firstOfTwoBytes; ++c) plain_[write(*fromUtf32, c)[0]] = static_cast<uint8_t>(c);
  for (char32_t c = firstOfTwoBytes; c < firstOfTwoBytes + (1 << trailBits); ++c) {
    plain_[write(*fromUtf32, c)[1]] = static_cast<uint8_t>(c);
  }
  for (const Leads& row : leads) {
    for (uint8_t i = 0; i < row.count; ++i) {
      const char32_t first = static_cast<char32_t>(i) << (trailBits * (row.length - 1));
      const char32_t last = first + (char32_t{1} << (trailBits * (row.length - 1))) - 1;
      if (last < row.lowest) continue;  // too long a form
      const uint8_t lead = write(*fromUtf32, std::max(first, row.lowest))[0];
      plain_[lead] = static_cast<uint8_t>(row.first + i);
      lengths_[lead] = static_cast<uint8_t>(row.length);
    }
  }
}

bool UtfEbcdicScan::isTrail(uint8_t byte) const { return plain_[byte] >> trailBits == firstTrail >> trailBits; }

std::optional<char32_t> UtfEbcdicScan::read(Bytes text) const {
  const size_t length = lengthAt(text[0]);
  if (length > text.size()) return std::nullopt;
  if (length == 1) return isTrail(text[0]) ? std::nullopt : std::optional<char32_t>(plain_[text[0]]);
  const Leads& row = leads[length - 2];
  char32_t character = static_cast<char32_t>(plain_[text[0]] - row.first);
  for (const uint8_t byte : text.subspan(1, length - 1)) {
    if (!isTrail(byte)) return std::nullopt;
    character = character << trailBits | (plain_[byte] & ((1 << trailBits) - 1));
  }
  return character < row.lowest ? std::nullopt : std::optional<char32_t>(character);
}

std::optional<size_t> UtfEbcdicScan::find(Bytes text, Unwritable& unwritable) const {
  for (size_t place = 0; place < text.size();) {
    const std::optional<char32_t> character = read(text.subspan(place));
    if (character && unwritable.has(*character)) return place;
    place += character ? lengthAt(text[place]) : 1;
  }
  return std::nullopt;
}

Bytes UtfEbcdicScan::judgeable(Bytes text) const {
  for (size_t behind = 1; behind <= std::min(text.size(), mostBytes - 1); ++behind) {
    const uint8_t byte = text[text.size() - behind];
    if (!isTrail(byte)) return lengthAt(byte) > behind ? text.first(text.size() - behind) : text;
  }
  return text;
}

}  // namespace veld
