// The twelve convert slots of the object.
#include "reference/reference.h"

namespace transcode_test {

namespace {

struct Slot {
  TextForm source;
  TextForm target;
  NlsConvert QZNLS::*convert;
  NlsConvertResumable QZNLS::*resumable;
};

constexpr TextForm utf8Form = textForms[0];
constexpr TextForm utfEbcdicForm = textForms[1];
constexpr TextForm utf16Form = textForms[2];
constexpr TextForm utf32Form = textForms[4];

constexpr Slot slots[] = {
    {utf16Form, utf32Form, &QZNLS::convertUtf16ToUtf32, &QZNLS::convertUtf16ToUtf32Resumable},
    {utf32Form, utf16Form, &QZNLS::convertUtf32ToUtf16, &QZNLS::convertUtf32ToUtf16Resumable},
    {utf16Form, utf8Form, &QZNLS::convertUtf16ToUtf8, &QZNLS::convertUtf16ToUtf8Resumable},
    {utf8Form, utf16Form, &QZNLS::convertUtf8ToUtf16, &QZNLS::convertUtf8ToUtf16Resumable},
    {utf16Form, utfEbcdicForm, &QZNLS::convertUtf16ToUtfEbcdic, &QZNLS::convertUtf16ToUtfEbcdicResumable},
    {utfEbcdicForm, utf16Form, &QZNLS::convertUtfEbcdicToUtf16, &QZNLS::convertUtfEbcdicToUtf16Resumable},
};

constexpr std::u32string_view sample = U"Az\u0085\u20AC\U0001F600  ";

TEST(ConvertSlots, PlainForms) {
  for (const Slot& slot : slots) {
    const Bytes input = textIn(slot.source, sample);
    for (size_t length = 0; length <= input.size(); ++length) {
      for (uint32_t capacity = 0; capacity < 40; ++capacity) {
        for (const bool blanks : {false, true}) {
          uint8_t output[40];
          uint32_t written = 99;
          const NlsStatus status = (nls()->*slot.convert)(nls(), input.data(), static_cast<uint32_t>(length), output,
                                                          capacity, &written, blanks ? &dropBlanks : nullptr);
          const Outcome outcome{.status = status, .bytes = Bytes(output, output + written)};
          ASSERT_EQ(outcome, expected(slot.source, slot.target, Span(input).first(length), capacity, false, blanks));
        }
      }
    }
    EXPECT_EQ((nls()->*slot.convert)(nls(), input.data(), 1, nullptr, 0, nullptr, nullptr), nlsOutputTruncated);
  }
}

TEST(ConvertSlots, ResumableForms) {
  for (const Slot& slot : slots) {
    const Bytes input = textIn(slot.source, sample);
    const Bytes whole = expected(slot.source, slot.target, input, 100, true).bytes;
    TranscodeProgress progress{};
    Bytes joined;
    for (const uint8_t byte : input) {
      uint8_t output[40];
      uint32_t written = 99;
      (nls()->*slot.resumable)(nls(), &byte, 1, output, sizeof output, &written, &progress, nullptr);
      EXPECT_EQ(progress.consumed, 1u);
      joined.insert(joined.end(), output, output + written);
    }
    EXPECT_EQ(joined, whole);
  }
}

}  // namespace

}  // namespace transcode_test
