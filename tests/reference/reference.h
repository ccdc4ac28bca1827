// What a conversion among Unicode forms gives, written a second time: text is read character by character, and each
// character is written under the rules of the target. Slow, short, and without a line of the library; the byte
// permutation of UTF-EBCDIC is read from data/.
#pragma once

#include <optional>

#include "transcode/harness.h"

namespace transcode_test {

enum class Form { utf8, utfEbcdic, utf16, utf32 };

struct TextForm {
  CEI cei;
  Form form;
  bool bigEndian;
};

inline constexpr TextForm textForms[] = {
    {U_UTF8_CE, Form::utf8, false},      {U_UTFE_CE, Form::utfEbcdic, false}, {U_L_UNICODE_CE, Form::utf16, false},
    {U_B_UNICODE_CE, Form::utf16, true}, {U_L_UCS4_CE, Form::utf32, false},   {U_B_UCS4_CE, Form::utf32, true},
};

inline bool isEightBit(const TextForm& text) { return text.form == Form::utf8 || text.form == Form::utfEbcdic; }

// True for the pairs of two steps, which have UTF-16LE between them.
inline bool isThroughUtf16(const TextForm& source, const TextForm& target) {
  return isEightBit(source) && isEightBit(target);
}

// True for the pairs that a single converting stage serves.
inline bool isDirect(const TextForm& source, const TextForm& target) {
  return source.form != target.form && !isThroughUtf16(source, target);
}

// One character of a text: how many bytes it takes, its value, or no value for bytes that aren't one. Length 0: more
// bytes are needed than there are.
struct Character {
  size_t length = 0;
  std::optional<uint32_t> value;
};

// The first character of a text that isn't empty.
Character nextUtf8(Span text);

// A text of code points in a form, as the library would encode it.
Bytes textIn(const TextForm& form, std::u32string_view text);

// Of a direct pair, and of a pair that keeps the form or goes through UTF-16LE: the two halves of `expected`.
Outcome expectedDirect(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                       bool mayDropBlanks);
Outcome expectedIndirect(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                         bool mayDropBlanks);

// The outcome of `transcodeResumable` for any pair of forms, with a fresh progress record if `resumable`. Without one
// its fields stay zero.
Outcome expected(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                 bool mayDropBlanks = false);

// What a run with a record that holds bytes tells, from what it tells of those bytes and the input as one text.
Outcome toldWithHeld(Outcome ofBoth, Span held);

// `expected` with a record that holds bytes from the call before.
Outcome expectedWithHeld(const TextForm& source, const TextForm& target, Span held, Span input, size_t capacity,
                         bool mayDropBlanks = false);

}  // namespace transcode_test
