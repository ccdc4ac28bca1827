#include "loss.h"

#include <array>

#include "text.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veld {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr uint8_t firstBeyondUnicode = 0x90;  // as the second byte of a utf-8 sequence that begins with F4

bool isBetween(uint8_t byte, uint8_t low, uint8_t high) { return byte >= low && byte <= high; }

// The library's own rule of gb18030 knows only a part of it.
bool hasFormOfGb18030(Bytes bytes) {
  if (bytes.size() == 1) return bytes[0] < 0x80;
  if (!isBetween(bytes[0], 0x81, 0xFE)) return false;
  if (bytes.size() == 2) return isBetween(bytes[1], 0x40, 0xFE) && bytes[1] != 0x7F;
  return bytes.size() == 4 && isBetween(bytes[1], 0x30, 0x39) && isBetween(bytes[2], 0x81, 0xFE) &&
         isBetween(bytes[3], 0x30, 0x39);
}

}  // namespace

std::string reasonName(LossReason reason) {
  switch (reason) {
    case LossReason::malformed:
      return "malformed";
    case LossReason::unassigned:
      return "unassigned";
    case LossReason::cut:
      return "cut";
    case LossReason::unmappable:
      break;
  }
  return "unmappable";
}

std::string hexBytes(Bytes bytes) {
  std::string text;
  for (const uint8_t byte : bytes) text += (text.empty() ? "" : " ") + hexDigits(byte, 2);
  return text;
}

std::string codePoint(char32_t character) { return "U+" + hexDigits(character, 4); }

LossJudge::LossJudge(QZNLS& nls, CEI from)
    : nls_(nls), from_(from), form_(nls, from), toUtf32_(makePipeline(nls, from, U_L_UCS4_CE)) {
  if (from == U_UTFE_CE) utfEbcdic_.emplace(nls);
}

// What the library's validation says of a character.
bool LossJudge::isFaultInText(Bytes bytes, bool inDouble) const {
  std::vector<uint8_t> text;
  const MultiByteProfile& profile = form_.row().profile;
  if (inDouble) text.assign(profile.shiftOut, profile.shiftOut + profile.shiftLength);
  text.insert(text.end(), bytes.begin(), bytes.end());
  return nls_.validateEncodedText(&nls_, text.data(), static_cast<uint32_t>(text.size()), from_, nullptr, nullptr) ==
         nlsInvalidCharacter;
}

bool LossJudge::isMalformed(Bytes bytes, bool inDouble) const {
  Unwritable none;
  switch (form_.row().encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return false;
    case NLS_CLASS_UTF8:
      return from_ == U_UTF8_CE &&
             (isFaultInText(bytes, false) || Utf8Scan(none, firstBeyondUnicode).find(bytes, none));
    case NLS_CLASS_UTF32:
      // The library's rule ends far below the last character.
      return bytes.size() < utf32Unit || findNoCharacter(bytes, byteOrderOf(from_), none);
    default:
      break;
  }
  if (from_ == U_GB18030_CE) return !hasFormOfGb18030(bytes);
  // A byte that begins a shift sequence, and another than belongs there.
  const MultiByteProfile& profile = form_.row().profile;
  const bool beginsShift = bytes[0] == profile.shiftOut[0] || bytes[0] == profile.shiftIn[0];
  if (form_.isShifted() && profile.shiftLength == 2 && bytes.size() == 2 && beginsShift) return true;
  // The library reads the two-byte start of characters of three, of which it has none.
  if (from_ == U_EUCJP_CE && bytes[0] == singleShiftThree) return false;
  return isFaultInText(bytes, inDouble);
}

std::optional<char32_t> LossJudge::read(Bytes bytes, bool inDouble) const {
  if (utfEbcdic_) return utfEbcdic_->read(bytes);
  if (toUtf32_ == nullptr) return std::nullopt;
  std::array<uint8_t, roomOfACharacter> output;
  const Converted converted = convertShort(*toUtf32_, bytes, output, inDouble);
  if (!converted.whole || converted.size != utf32Unit) return std::nullopt;
  const char32_t character = unitAt(output, 0, utf32Unit, ByteOrder::little);
  if (character == replacement && form_.row().encodingClass == NLS_CLASS_SINGLE_BYTE) return std::nullopt;
  // Single bytes that have no meaning become blanks.
  const bool isBlank = bytes.size() == 1 && bytes[0] == static_cast<uint8_t>(form_.row().padChar);
  if (character == U' ' && !isBlank && bytes.size() == 1) return std::nullopt;
  return character;
}

void LossJudge::judge(Loss& loss, bool inDouble) const {
  if (isMalformed(loss.bytes, inDouble)) {
    loss.reason = LossReason::malformed;
    return;
  }
  loss.character = read(loss.bytes, inDouble);
  loss.reason = loss.character ? LossReason::unmappable : LossReason::unassigned;
}

}  // namespace veld
