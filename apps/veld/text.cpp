#include "text.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

namespace veld {

namespace {

// A UTF-8 byte gives at most one 16-bit unit, and a unit at most three bytes.
constexpr size_t bytesPerUnit = 3;
constexpr char32_t firstGraphic = 0x20;
constexpr char32_t deleteCharacter = 0x7F;
constexpr char32_t firstBeyondAscii = 0x80;
constexpr char32_t firstBeyondControls = 0xA0;
constexpr size_t longestUtf8 = 4;

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

// The first character of a text, or the first byte where that begins none.
struct Utf8Character {
  char32_t character;
  size_t length;
  bool sound;
};

Utf8Character firstOf(std::string_view text) {
  const auto lead = static_cast<uint8_t>(text[0]);
  if (lead < firstBeyondAscii) return {lead, 1, true};
  const Utf8Character byteAlone{lead, 1, false};
  const size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
  if (length == 1 || length > text.size()) return byteAlone;
  char32_t character = lead & (0x7Fu >> length);
  for (const char c : text.substr(1, length - 1)) {
    const auto byte = static_cast<uint8_t>(c);
    if ((byte & 0xC0) != 0x80) return byteAlone;
    character = character << 6 | (byte & 0x3Fu);
  }
  constexpr std::array<char32_t, longestUtf8 + 1> lowest{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < lowest[length] || isSurrogate || character > 0x10FFFF) return byteAlone;
  return {character, length, true};
}

}  // namespace

bool isControl(char32_t character) {
  if (character < firstGraphic || (character >= deleteCharacter && character < firstBeyondControls)) return true;
  switch (character) {
    case 0x061C:  // marks of direction
    case 0x200E:
    case 0x200F:
    case 0x2028:  // ends of lines and paragraphs
    case 0x2029:
      return true;
    default:  // embeddings, overrides and isolates
      return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
  }
}

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
  while (!text.empty()) {
    const Utf8Character first = firstOf(text);
    const std::string_view sequence = text.substr(0, first.length);
    if (sequence == "\n") {
      line += "\\n";
    } else if (!isControl(first.character)) {
      line += sequence;
    } else if (first.character < firstBeyondAscii || !first.sound) {
      line += "\\x" + hexDigits(first.character, 2);
    } else {
      line += "\\u" + hexDigits(first.character, 4);
    }
    text.remove_prefix(first.length);
  }
  return line;
}

std::string withoutControls(std::string_view json) {
  std::string line;
  while (!json.empty()) {
    const Utf8Character first = firstOf(json);
    line += isControl(first.character) ? "\\u" + hexDigits(first.character, 4) : json.substr(0, first.length);
    json.remove_prefix(first.length);
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
