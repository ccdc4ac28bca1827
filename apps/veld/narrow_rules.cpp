#include "narrow_rules.h"

#include <algorithm>

#include "byte_meanings.h"
#include "names.h"
#include "text.h"
#include "unicode_scan.h"
#include "unwritable.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr char32_t bmpEnd = 0x10000;

// The code of a character, without the shifts around it.
Bytes withoutShifts(Bytes code, const EncodingDescriptor& row) {
  const size_t shift = row.encodingClass == NLS_CLASS_SHIFTED ? row.profile.shiftLength : 0;
  const bool isShifted =
      code.size() > 2 * shift &&
      std::equal(code.begin(), code.begin() + static_cast<ptrdiff_t>(shift), std::begin(row.profile.shiftOut));
  return isShifted ? code.subspan(shift, code.size() - 2 * shift) : code;
}

std::string hexOf(const std::vector<uint8_t>& code) {
  std::string text;
  for (const uint8_t byte : code) text += (text.empty() ? "" : " ") + hexDigits(byte, 2);
  return text;
}

// Codes of one length that a rule refuses.
struct Refused {
  size_t count = 0;
  std::vector<uint8_t> first;
  std::vector<uint8_t> last;

  void add(Bytes code) {
    const std::vector<uint8_t> added(code.begin(), code.end());
    if (count == 0 || added < first) first = added;
    if (count == 0 || added > last) last = added;
    ++count;
  }
  std::string note(const std::string& rule) const {
    const std::string noun = first.size() == 1 ? "byte" : "code";
    if (count == 1) return rule + " refuses the " + noun + ' ' + hexOf(first) + ", though it is sound";
    return rule + " refuses " + std::to_string(count) + ' ' + noun + "s that are sound, the first " + hexOf(first) +
           ", the last " + hexOf(last);
  }
};

}  // namespace

NarrowRules::NarrowRules(QZNLS& nls, CEI cei) {
  const EncodingDescriptor& row = rowOf(nls, cei);
  const std::string rule = "the library's rule for " + displayName(nls, cei);
  if (row.encodingClass == NLS_CLASS_UTF32) {
    anywhere_ = true;
    notes_.push_back(rule + " refuses characters beyond U+1018F, though they are sound");
  } else if (cei == U_GB18030_CE) {
    anywhere_ = true;
    notes_.push_back(rule +
                     " knows lead bytes from A1 on only, and refuses a character of two bytes unless one follows; such "
                     "text may be sound, which \"veld convert\" tells");
  } else {
    ask(nls, cei, rule);
  }
}

void NarrowRules::ask(QZNLS& nls, CEI cei, const std::string& rule) {
  const EncodingDescriptor& row = rowOf(nls, cei);
  const Pipeline fromUtf16 = makePipeline(nls, U_L_UNICODE_CE, cei);
  Unwritable unwritable(nls, cei);
  if (fromUtf16 == nullptr || !unwritable.mayHaveAny()) return;
  Refused singles;
  Refused pairs;
  for (char32_t c = 0; c < bmpEnd; ++c) {
    if (isHighSurrogate(c) || isLowSurrogate(c) || unwritable.has(c)) continue;
    const std::array<uint8_t, utf16Unit> unit{static_cast<uint8_t>(c), static_cast<uint8_t>(c >> 8)};
    std::array<uint8_t, roomOfACharacter> written;
    const Converted out = convertShort(*fromUtf16, unit, written);
    int32_t fault = -1;
    if (!out.whole ||
        nls.validateEncodedText(&nls, written.data(), static_cast<uint32_t>(out.size), cei, nullptr, &fault) == 0) {
      continue;
    }
    faultBytes_[written[static_cast<size_t>(fault)]] = true;
    const Bytes code = withoutShifts(Bytes(written).first(out.size), row);
    (code.size() == 1 ? singles : pairs).add(code);
  }
  if (singles.count > 0) notes_.push_back(singles.note(rule));
  if (pairs.count > 0) notes_.push_back(pairs.note(rule));
}

}  // namespace veld
