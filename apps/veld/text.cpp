#include "text.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace veld {

namespace {

// A UTF-8 byte gives at most one 16-bit unit, and a unit at most three bytes.
constexpr size_t bytesPerUnit = 3;
constexpr uint8_t firstGraphic = 0x20;
constexpr uint8_t deleteCharacter = 0x7F;

// F4 80 80 80 to F4 8F BF BF.
constexpr size_t plane16Length = 4;

bool isPlane16(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  const auto isTrail = [&](size_t i) { return (byte(i) & 0xC0) == 0x80; };
  return text.size() >= plane16Length && byte(0) == 0xF4 && (byte(1) & 0xF0) == 0x80 && isTrail(2) && isTrail(3);
}

size_t findPlane16(std::string_view text) {
  size_t place = text.find('\xF4');
  while (place != std::string_view::npos && !isPlane16(text.substr(place))) place = text.find('\xF4', place + 1);
  return std::min(place, text.size());
}

std::u16string pairOfPlane16(std::string_view sequence) {
  char32_t character = 0;
  for (const char c : sequence.substr(1, plane16Length - 1))
    character = character << 6 | (static_cast<uint8_t>(c) & 0x3F);
  return {static_cast<char16_t>(0xDBC0 | character >> 10), static_cast<char16_t>(0xDC00 | (character & 0x3FF))};
}

std::u16string decode(QZNLS& nls, std::string_view text) {
  std::u16string units(text.size(), u'\0');
  uint32_t written = 0;
  TranscodeProgress progress{};
  nls.convertUtf8ToUtf16Resumable(&nls, text.data(), static_cast<uint32_t>(text.size()), units.data(),
                                  static_cast<uint32_t>(units.size() * sizeof(char16_t)), &written, &progress, nullptr);
  units.resize(written / sizeof(char16_t));
  // The library waits for more behind bytes at the end that announce it.
  if (progress.heldCount > 0) units += u'\uFFFD';
  return units;
}

}  // namespace

// Of a character of plane 16 the library writes the low 16 bits alone.
std::u16string toUtf16(QZNLS& nls, std::string_view text) {
  std::u16string units;
  for (size_t place = findPlane16(text); place < text.size(); place = findPlane16(text)) {
    units += decode(nls, text.substr(0, place)) + pairOfPlane16(text.substr(place));
    text.remove_prefix(place + plane16Length);
  }
  return units + decode(nls, text);
}

std::string toUtf8(QZNLS& nls, std::u16string_view text) {
  std::string bytes(text.size() * bytesPerUnit, '\0');
  uint32_t written = 0;
  nls.convertUtf16ToUtf8(&nls, text.data(), static_cast<uint32_t>(text.size() * sizeof(char16_t)), bytes.data(),
                         static_cast<uint32_t>(bytes.size()), &written, nullptr);
  bytes.resize(written);
  return bytes;
}

std::string onOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const auto byte = static_cast<uint8_t>(c);
    if (c == '\n') {
      line += "\\n";
    } else if (byte < firstGraphic || byte == deleteCharacter) {
      line += "\\x" + hexDigits(byte, 2);
    } else {
      line += c;
    }
  }
  return line;
}

std::string hexDigits(uint32_t value, int digits) {
  std::ostringstream text;
  text << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << value;
  return text.str();
}

std::string hexNumber(uint32_t value, int digits) { return "0x" + hexDigits(value, digits); }

}  // namespace veld
