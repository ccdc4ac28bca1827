// validateEncodedText on any text and encoding, against a second reading of its rules and against conversion.
//
// Input: encoding (two bytes), then the text.
#include <optional>

#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "support/conversion.h"
#include "transcode/validity.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr size_t longestText = 2200;

struct Verdict {
  NlsStatus status;
  int32_t offset;

  bool operator==(const Verdict&) const = default;
};

Verdict validate(Span text, CEI cei, At at) {
  static Area area(longestText + 4096);
  static uint8_t neighbour = 0;
  const Room room = area.place(text.size(), at);
  std::ranges::fill(Area::beside(room, at), neighbour += 0x35);
  std::ranges::copy(text, room.begin());
  Verdict verdict{0, 12345};
  verdict.status = host().nls->validateEncodedText(host().nls, text.empty() ? nullptr : room.data(),
                                                   static_cast<uint32_t>(text.size()), cei, nullptr, &verdict.offset);
  requireEqual(room, text, "the text stays as it was");
  return verdict;
}

bool isRefused(const EncodingDescriptor& row) {
  if (row.cei == U_UTFE_CE || row.cei == U_UCSU_CE) return true;
  const bool anyText = row.cei == U_EBCDICANY_CE || row.cei == U_ANY_CE;
  return row.encodingClass == NLS_CLASS_SINGLE_BYTE && !anyText && !transcode_test::definedBytes(row.cei);
}

// ---- Conversion ----

using test::Converted;

std::optional<Converted> convert(Span text, CEI source, CEI target) {
  const Pipeline pipeline(source, target);
  if (pipeline == nullptr) return std::nullopt;
  return test::convertWhole(pipeline, text);
}

// Whether a text has a value that a rule takes and conversion replaces, or the other way round.
bool hasUnit(Span units, size_t size, bool (*isOne)(uint32_t value)) {
  for (size_t i = 0; i + size <= units.size(); i += size) {
    uint32_t value = 0;
    for (size_t k = 0; k < size; ++k) value |= uint32_t{units[i + k]} << (8 * k);
    if (isOne(value)) return true;
  }
  return false;
}

bool isReplacement(uint32_t unit) { return unit == 0xFFFD; }

// A page's undefined bytes come out as U+FFFD.
void checkPage(Span text, CEI cei, bool valid) {
  const std::optional<Converted> converted = convert(text, cei, U_L_UNICODE_CE);
  if (!converted || cei == U_ASCII_CE || cei == U_EBCDICANY_CE || cei == U_ANY_CE) return;
  require(valid == !hasUnit(converted->bytes, 2, isReplacement), "a page's text is valid if all its bytes are read");
}

// Leads from F4 have no upper bound here.
void checkUtf8(Span text, bool valid) {
  const Converted converted = convert(text, U_UTF8_CE, U_L_UNICODE_CE).value();
  if (converted.status == 0) require(valid, "what converts without a replacement is valid");
  const bool beyond = std::ranges::any_of(text, [](uint8_t byte) { return byte >= 0xF4; });
  if (valid && !beyond) require(converted.status == 0, "what is valid converts without a replacement");
}

void checkUtf16(Span text, CEI cei, bool valid) {
  const CEI target = cei == U_B_UNICODE_CE ? U_B_UCS4_CE : U_L_UCS4_CE;
  const Converted converted = convert(text, cei, target).value();
  require(valid == (converted.status == 0), "UTF-16 is valid if it converts to UTF-32 as it is");
}

bool isSurrogate(uint32_t value) { return value >= 0xD800 && value <= 0xDFFF; }

void checkUtf32(Span text, CEI cei, bool valid) {
  if (!valid) return;
  const Converted turned = convert(text, cei, cei == U_L_UCS4_CE ? U_B_UCS4_CE : U_L_UCS4_CE).value();
  const Span little = cei == U_L_UCS4_CE ? Span(text) : Span(turned.bytes);
  const Converted converted = convert(text, cei, U_L_UNICODE_CE).value();
  require(converted.status == 0 || hasUnit(little, 4, isSurrogate), "valid UTF-32 converts to UTF-16 as it is");
}

// Rows whose characters are told apart in the same way by the rule and by conversion.
bool isCutAlike(const EncodingDescriptor& row) {
  switch (row.cei) {
    case U_EUCJP_CE:
    case U_EUCTW_CE:
    case U_GB18030_CE:
    case U_ISO2022KR_CE:
    case U_ISO2022CNGB_CE:
    case U_ISO2022CNCNS_CE:
      return false;
    default:
      return row.profile.shiftLength < 2;
  }
}

// A text that is valid ends with a whole character, unless a shift ends it.
void checkMultiByte(Span text, const EncodingDescriptor& row, bool valid) {
  if (!valid || !isCutAlike(row)) return;
  const bool shiftAtEnd = row.profile.shiftLength == 1 && !text.empty() && text.back() == row.profile.shiftOut[0];
  const Converted converted = convert(text, row.cei, U_L_UNICODE_CE).value();
  require(shiftAtEnd || converted.status != nlsIncompleteInput, "valid text ends with a whole character");
}

void checkConversion(Span text, const EncodingDescriptor& row, bool valid) {
  switch (row.encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return checkPage(text, row.cei, valid);
    case NLS_CLASS_UTF8:
      return checkUtf8(text, valid);
    case NLS_CLASS_UTF16:
      return checkUtf16(text, row.cei, valid);
    case NLS_CLASS_UTF32:
      return checkUtf32(text, row.cei, valid);
    default:
      return checkMultiByte(text, row, valid);
  }
}

// Whether the beginning of a valid text, up to a character, is valid. Shifted text may have its fault in the second
// byte of one, UTF-16 in an odd byte behind all, and GB18030 looks at the byte behind a character.
bool endsAnywhere(const EncodingDescriptor& row) {
  return row.encodingClass != NLS_CLASS_SHIFTED && row.encodingClass != NLS_CLASS_UTF16 && row.cei != U_GB18030_CE;
}

}  // namespace

void check(Input input) {
  const EncodingDescriptor& row = chooseEncoding(input);
  const Bytes text = input.text(longestText);
  const Verdict verdict = validate(text, row.cei, At::end);
  require(validate(text, row.cei, At::start) == verdict, "the verdict depends on what lies beside the text");
  if (isRefused(row)) {
    require(verdict == Verdict{nlsUnknownEncoding, -1}, "an encoding that can't be validated");
    return;
  }
  const int64_t fault = transcode_test::firstFault(row, text);
  const bool valid = fault == transcode_test::wellFormed;
  require(verdict.status == (valid ? 0 : nlsInvalidCharacter), "the verdict of the reference");
  require(verdict.offset == fault, "the place of the reference");
  if (!valid && endsAnywhere(row)) {
    const Span ahead = Span(text).first(static_cast<size_t>(fault));
    require(validate(ahead, row.cei, At::end).status == 0, "what stands ahead of the first fault is valid");
  }
  checkConversion(text, row, valid);
}

}  // namespace fuzz
