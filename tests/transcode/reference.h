// What a conversion among Unicode forms gives, written a second time: text is read character by character into a list,
// and the list is written under the rules of the target. Slow, short, and without a line of the library but the byte
// permutation of UTF-EBCDIC.
#pragma once

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

// True for the pairs that a single converting stage serves.
inline bool isDirect(const TextForm& source, const TextForm& target) {
  const auto eightBit = [](Form form) { return form == Form::utf8 || form == Form::utfEbcdic; };
  return source.form != target.form && !(eightBit(source.form) && eightBit(target.form));
}

// A text of code points in a form, as the library would encode it.
Bytes textIn(const TextForm& form, std::u32string_view text);

// The outcome of a direct pair. Without `resumable` the fields of the progress record stay zero.
Outcome expected(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                 bool mayDropBlanks = false);

}  // namespace transcode_test
