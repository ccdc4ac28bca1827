// Every code page against the oracle, in every direction: whole, at every capacity, and cut anywhere.
#include <algorithm>
#include <set>

#include "modules/qznlssb/oracle.h"
#include "modules/qznlssb/route.h"
#include "modules/qznlssb/tables.h"

namespace test {
namespace {

constexpr CEI unicodeForms[] = {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTFE_CE};

class EveryRow : public SingleByteTest {
 protected:
  static std::vector<CEI> readable() {
    std::vector<CEI> ceis;
    for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
      if (veldnls::byteToUnicodeTables[cei] != nullptr) ceis.push_back(cei);
    }
    return ceis;
  }

  static std::vector<CEI> writable() {
    std::vector<CEI> ceis;
    for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
      if (veldnls::byteFromUnicodeTables[cei] != nullptr) ceis.push_back(cei);
    }
    return ceis;
  }

  // So little room that a route refuses it before it looks at the text.
  static bool refuses(const Route& route, uint32_t capacity) {
    const PipelineSide& target = route.pipeline.target;
    if (target.cei == U_UTF8_CE) return false;
    const uint32_t smallest = target.encodingClass == NLS_CLASS_UTF16   ? 2
                              : target.encodingClass == NLS_CLASS_UTF32 ? 4
                                                                        : 1;
    return capacity < smallest;
  }

  void runAtEveryCapacity(Route& route, const Items& items) {
    const Bytes input = inputOf(items);
    const auto full = static_cast<uint32_t>(outputOf(items).size());
    for (const bool mayDrop : {false, true}) {
      for (uint32_t capacity = 0; capacity <= full + 8; ++capacity) {
        SCOPED_TRACE(testing::Message() << "capacity " << capacity << (mayDrop ? ", blanks may be dropped" : ""));
        const TranscodeOptions* options = mayDrop ? &dropBlanks : nullptr;
        // An odd size leaves half a unit of UTF-16, which is no blank.
        const bool halfUnit = route.pipeline.target.encodingClass == NLS_CLASS_UTF16 && capacity % 2 == 1;
        const Expected wanted = expect(items, capacity, mayDrop && !halfUnit, refuses(route, capacity));
        const Outcome plain = route.transcode(input, capacity, options);
        EXPECT_EQ(plain.status, wanted.status);
        EXPECT_EQ(plain.output, wanted.output);
        TranscodeProgress progress{};
        const Outcome outcome = route.resume(input, capacity, progress, options);
        EXPECT_EQ(outcome.status, wanted.status);
        EXPECT_EQ(outcome.output, wanted.output);
        EXPECT_EQ(progress.consumed, wanted.consumed);
        EXPECT_EQ((progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0, wanted.substituted);
      }
    }
  }
};

Bytes everyByte() {
  Bytes bytes;
  for (uint32_t byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<uint8_t>(byte));
  return bytes;
}

// All values that a code page knows, and some that it doesn't.
std::u32string everyValue(CEI cei) {
  std::set<char32_t> values = {0x0, 0x20, 0x7F, 0x80, 0xFF, 0x416, 0x3042, 0xFFFD, 0x1F600, 0x10000, 0x3FFFF};
  for (uint32_t byte = 0; byte < 256; ++byte) values.insert(veldnls::byteToUnicodeTables[cei][byte]);
  return {values.begin(), values.end()};
}

TEST_F(EveryRow, HasItsTables) {
  EXPECT_EQ(readable().size(), 142u);
  EXPECT_EQ(writable().size(), 141u);
}

TEST_F(EveryRow, EveryByteToEveryForm) {
  for (const CEI cei : readable()) {
    for (const CEI form : unicodeForms) {
      SCOPED_TRACE(testing::Message() << cei << " to " << form);
      Route route(nls, cei, form);
      ASSERT_EQ(route.setup, 0u);
      const Items items = toUnicode(cei, everyByte(), row(form));
      const Outcome outcome = route.transcode(inputOf(items), 2048);
      EXPECT_EQ(outcome.status, 0u);
      EXPECT_EQ(outcome.output, outputOf(items));
    }
  }
}

TEST_F(EveryRow, EveryValueFromEveryForm) {
  for (const CEI cei : writable()) {
    for (const CEI form : unicodeForms) {
      SCOPED_TRACE(testing::Message() << form << " to " << cei);
      Route route(nls, form, cei);
      ASSERT_EQ(route.setup, 0u);
      const Items items = fromUnicode(row(form), everyValue(cei), row(cei));
      const Outcome outcome = route.transcode(inputOf(items));
      EXPECT_EQ(outcome.status, nlsSubstituted);
      EXPECT_EQ(outcome.output, outputOf(items));
    }
  }
}

// Every code point of 16 bits: what a page has beyond its bytes is one of the known extras.
TEST_F(EveryRow, NothingElseHasAByte) {
  for (const CEI cei : writable()) {
    Route route(nls, U_L_UNICODE_CE, cei);
    Items items;
    for (uint32_t value = 0; value < 0x10000; ++value) {
      if (value >= 0xD800 && value < 0xE000) continue;
      const auto byte = byteOfValue(cei, static_cast<char16_t>(value));
      items.push_back({utf16(std::u16string(1, static_cast<char16_t>(value))),
                       {byte.value_or(row(cei).substitution & 0xFF)},
                       false,
                       false});
    }
    const Bytes input = inputOf(items);
    Bytes output(items.size());
    uint32_t length = 0;
    route.pipeline.transcode(&route.pipeline, input.data(), static_cast<uint32_t>(input.size()), output.data(),
                             static_cast<uint32_t>(output.size()), &length, nullptr);
    EXPECT_EQ(length, output.size());
    EXPECT_TRUE(output == outputOf(items)) << cei;
  }
}

TEST_F(EveryRow, AtEveryCapacityToEveryForm) {
  for (const CEI cei : readable()) {
    const auto blank = static_cast<uint8_t>(row(cei).padChar);
    const Bytes text = {0xC1, 0x80, blank, 0x41, 0xFE, 0x9D, blank, blank};
    for (const CEI form : unicodeForms) {
      SCOPED_TRACE(testing::Message() << cei << " to " << form);
      Route route(nls, cei, form);
      runAtEveryCapacity(route, toUnicode(cei, text, row(form)));
    }
  }
}

TEST_F(EveryRow, AtEveryCapacityFromEveryForm) {
  for (const CEI cei : writable()) {
    const char16_t* table = veldnls::byteToUnicodeTables[cei];
    const std::u32string texts[] = {
        {U'a', 0, U' ', table[0xC1], table[0x81], U'Z', U' ', U' '},
        {table[0xFE], 0x1F600, U'\u3042', U' ', U'x', 0x20000, U' ', U' '},
    };
    for (const CEI form : unicodeForms) {
      SCOPED_TRACE(testing::Message() << form << " to " << cei);
      Route route(nls, form, cei);
      for (const std::u32string& text : texts) {
        Items items = fromUnicode(row(form), text, row(cei));
        // The routes that pass through UTF-16 lose the report of a substitution when they drop blanks.
        if (form == U_UTF8_CE && anySubstituted(items)) {
          items.pop_back();
          items.pop_back();
        }
        runAtEveryCapacity(route, items);
      }
    }
  }
}

TEST_F(EveryRow, AtEveryCapacityThroughAByteMap) {
  for (const CEI cei : writable()) {
    SCOPED_TRACE(cei);
    Route route(nls, cei, U_WLATIN1_CE);
    const auto blank = static_cast<uint8_t>(row(cei).padChar);
    Items items;
    for (const uint8_t byte : Bytes{0xC1, 0x80, blank, 0x41, 0xFE, blank, blank}) {
      items.push_back({{byte}, {route.pipeline.source.byteMap[byte]}, byte == blank, false});
    }
    const bool directional = (row(cei).flags & NLS_ENCODING_DIRECTIONAL) != 0;
    for (uint32_t capacity = 0; capacity <= items.size() + 8; ++capacity) {
      const Expected wanted = expect(items, capacity, true, capacity == 0 && !directional);
      TranscodeProgress progress{};
      const Outcome outcome = route.resume(inputOf(items), capacity, progress, &dropBlanks);
      EXPECT_EQ(outcome.status, wanted.status) << capacity;
      EXPECT_EQ(outcome.output, wanted.output) << capacity;
      EXPECT_EQ(progress.consumed, wanted.consumed) << capacity;
    }
  }
}

TEST_F(EveryRow, CutAnywhereIsTheWhole) {
  for (const CEI cei : {U_WLATIN1_CE, U_EBCDIC1047_CE, U_WVIETNAMESE_CE, U_PCOEM437_CE}) {
    const char16_t* table = veldnls::byteToUnicodeTables[cei];
    for (const CEI form : unicodeForms) {
      SCOPED_TRACE(testing::Message() << form << " to " << cei);
      Route route(nls, form, cei);
      std::u32string text = {U'a', table[0xC1], U'\u3042', table[0x80], U'Z', 0, U' ', table[0xFE]};
      // A pair of UTF-16 that is cut in two counts twice.
      if (form != U_L_UNICODE_CE && form != U_B_UNICODE_CE) text += 0x1F600;
      const Items items = fromUnicode(row(form), text, row(cei));
      const Bytes input = inputOf(items);
      for (uint32_t piece = 1; piece <= input.size(); ++piece) {
        for (const uint32_t room : {1u, 2u, 3u, 64u}) {
          const Whole whole = stream(route, input, piece, room);
          EXPECT_EQ(whole.output, outputOf(items)) << "piece " << piece << ", room " << room;
          EXPECT_TRUE(whole.substituted);
          EXPECT_FALSE(whole.incomplete);
        }
      }
    }
  }
}

TEST_F(EveryRow, CutAnywhereToEveryForm) {
  const Bytes text = everyByte();
  for (const CEI form : unicodeForms) {
    Route route(nls, U_WLATIN1_CE, form);
    const Bytes wanted = outputOf(toUnicode(U_WLATIN1_CE, text, row(form)));
    for (const uint32_t piece : {1u, 7u, 256u}) {
      for (const uint32_t room : {4u, 5u, 6u, 7u, 64u}) {
        EXPECT_EQ(stream(route, text, piece, room).output, wanted) << form << ", piece " << piece << ", room " << room;
      }
    }
  }
}

}  // namespace
}  // namespace test
