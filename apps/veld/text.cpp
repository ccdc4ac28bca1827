#include "text.h"

#include <iomanip>
#include <sstream>

namespace veld {

namespace {

// A UTF-8 byte gives at most one 16-bit unit, and a unit at most three bytes.
constexpr size_t bytesPerUnit = 3;
constexpr uint8_t firstGraphic = 0x20;
constexpr uint8_t deleteCharacter = 0x7F;

}  // namespace

std::u16string toUtf16(QZNLS& nls, std::string_view text) {
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
