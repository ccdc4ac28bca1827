// Every converting stage against the reference: all code points and units, all leads with boundary trails, all
// capacities, all cuts.
#include <algorithm>
#include <functional>
#include <string>

#include "reference/reference.h"

namespace transcode_test {

namespace {

void check(TranscodingPipeline* pipeline, const TextForm& source, const TextForm& target, Span input, size_t capacity) {
  ASSERT_EQ(run(pipeline, input, capacity), expected(source, target, input, capacity, false))
      << source.cei << " to " << target.cei << ", room " << capacity << ", input " << test::toHex(input);
  TranscodeProgress progress{};
  ASSERT_EQ(resume(pipeline, input, capacity, progress), expected(source, target, input, capacity, true))
      << source.cei << " to " << target.cei << ", room " << capacity << ", input " << test::toHex(input);
}

// Texts with every oddity of the form, short enough to be run at every capacity.
std::vector<Bytes> samples(const TextForm& source) {
  const std::u32string_view text =
      U"ab\u00E9\u0085\u07FF\u0800\u20ACz\uFFFD\U00010000x\U0001F600\U000FFFFF\U0010FFFFy ";
  switch (source.form) {
    case Form::utf8:
      return {utf8(text),
              hex("41 C0 80 E2 28 A1 ED A0 80 F0 80 80 80 F4 90 80 80 41"),
              hex("F8 88 80 80 80 FC 84 80 80 80 80 FF 41 42 43 44 45 46 80 BF"),
              hex("FC 41 F0 9F 98 80 42 F0 F0 9F 98 80 C2 E2 82 AC"),
              hex("61 E2 82"),
              hex("F0 9F 98"),
              hex("FD 80 80 80 80")};
    case Form::utfEbcdic: {
      const Pipeline pipeline(U_L_UNICODE_CE, U_UTFE_CE);
      Bytes mixed = run(pipeline, utf16(text), 200).bytes;
      Bytes stray = hex("41 41 C1 42 43 C2");
      stray.insert(stray.end(), mixed.begin() + 2, mixed.end() - 2);
      // Values above U+10FFFF: a five-byte sequence with all bits, and one cut short.
      Bytes high = hex("C1");
      Bytes last = run(Pipeline(U_L_UCS4_CE, U_UTFE_CE), hex("FF FF 1F 00"), 8).bytes;
      high.insert(high.end(), last.begin(), last.end());
      high.insert(high.end(), last.begin(), last.end() - 1);
      return {mixed, stray, high};
    }
    case Form::utf16: {
      std::vector<Bytes> all = {utf16(text, source.bigEndian)};
      for (const char* units :
           {"00 D8 41 00 00 DC 00 DC 42 00 41", "3D D8 00 DE 00 D8", "D8 00 41 00 DC 00 00 D8 00 42",
            "D8 3D DE 00 20 AC D8", "41 00 00 D8 00 D8 00 DC 41 00"}) {
        all.push_back(hex(units));
      }
      return all;
    }
    default: {
      std::vector<Bytes> all = {utf32(text, source.bigEndian)};
      for (const char* units :
           {"00 00 11 00 41 00 00 00 00 D8 00 00 FF FF FF 7F", "00 00 00 80 41 00 00 00 FF FF FF FF",
            "80 00 00 00 00 00 00 41 7F FF FF FF 00 20 00 00 00 00 DF FF 03 FF FF FF 12",
            "41 00 00 00 00 00 20 00 00 00 00 04 42 00"}) {
        all.push_back(hex(units));
      }
      return all;
    }
  }
}

void forDirectPairs(const std::function<void(TranscodingPipeline*, const TextForm&, const TextForm&)>& body) {
  for (const TextForm& source : textForms) {
    for (const TextForm& target : textForms) {
      if (!isDirect(source, target)) continue;
      const Pipeline pipeline(source.cei, target.cei);
      ASSERT_NE(pipeline, nullptr);
      body(pipeline, source, target);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(Stages, EverySampleAtEveryCapacity) {
  forDirectPairs([](auto* pipeline, const TextForm& source, const TextForm& target) {
    for (const Bytes& text : samples(source)) {
      const size_t full = expected(source, target, text, 1000, false).bytes.size();
      for (size_t capacity = 0; capacity <= full + 8; ++capacity) {
        ASSERT_NO_FATAL_FAILURE(check(pipeline, source, target, text, capacity));
      }
    }
  });
}

TEST(Stages, EveryPrefixOfEverySample) {
  forDirectPairs([](auto* pipeline, const TextForm& source, const TextForm& target) {
    for (const Bytes& text : samples(source)) {
      for (size_t length = 0; length <= text.size(); ++length) {
        ASSERT_NO_FATAL_FAILURE(check(pipeline, source, target, Span(text).first(length), 1000));
      }
    }
  });
}

TEST(Stages, EveryCutGivesTheWhole) {
  forDirectPairs([](auto* pipeline, const TextForm& source, const TextForm& target) {
    for (const Bytes& text : samples(source)) {
      Outcome whole = expected(source, target, text, 1000, true);
      if (whole.substituted && whole.status == 0) whole.status = nlsSubstituted;
      for (size_t cut = 0; cut <= text.size(); ++cut) {
        const size_t lengths[] = {cut, 0};
        ASSERT_EQ(inPieces(pipeline, text, lengths), whole)
            << source.cei << " to " << target.cei << " cut at " << cut << ", input " << test::toHex(text);
      }
      std::vector<size_t> single(text.size(), 1);
      ASSERT_EQ(inPieces(pipeline, text, single).bytes, whole.bytes) << source.cei << " to " << target.cei;
    }
  });
}

// Goes on from `consumed` with the same small room until the input is done.
TEST(Stages, SmallWindowsGiveTheWhole) {
  constexpr size_t room = 6;
  forDirectPairs([](auto* pipeline, const TextForm& source, const TextForm& target) {
    // Supplementary characters would be replaced at the end of a 16-bit output.
    const bool sixteen = source.form == Form::utf16 || target.form == Form::utf16;
    const Bytes input =
        textIn(source, sixteen ? U"ab\u00E9\u20ACz\uFFFDxy " : U"ab\u00E9\u20ACz\U00010000x\U0001F600y ");
    const Bytes whole = expected(source, target, input, 1000, true).bytes;
    for (const size_t piece : {1u, 2u, 3u, 5u, 7u}) {
      TranscodeProgress progress{};
      Bytes bytes;
      Span rest = input;
      for (int calls = 0; !rest.empty() && calls < 100; ++calls) {
        const Outcome part = resume(pipeline, rest.first(std::min(piece, rest.size())), room, progress);
        bytes.insert(bytes.end(), part.bytes.begin(), part.bytes.end());
        rest = rest.subspan(part.consumed);
      }
      ASSERT_TRUE(rest.empty());
      ASSERT_EQ(bytes, whole) << source.cei << " to " << target.cei << " by " << piece;
    }
  });
}

TEST(Stages, HeldBytesWithoutRoomAreHeldAgain) {
  forDirectPairs([](auto* pipeline, const TextForm& source, const TextForm& target) {
    for (const Bytes& text : samples(source)) {
      for (size_t cut = 1; cut < text.size(); ++cut) {
        TranscodeProgress progress{};
        const Outcome first = resume(pipeline, Span(text).first(cut), 1000, progress);
        if (first.held.empty()) continue;
        const Span rest = Span(text).subspan(cut);
        const TranscodeProgress saved = progress;
        for (size_t capacity = 0; capacity < 8; ++capacity) {
          progress = saved;
          const Outcome narrow = resume(pipeline, rest, capacity, progress);
          if (narrow.status != nlsOutputTruncated || !narrow.bytes.empty()) continue;
          ASSERT_EQ(narrow.consumed, 0u);
          ASSERT_TRUE(narrow.pending);
          ASSERT_EQ(narrow.held, first.held);
          // With room the text goes on as if nothing had happened.
          const Outcome again = resume(pipeline, rest, 1000, progress);
          Bytes joined = first.bytes;
          joined.insert(joined.end(), again.bytes.begin(), again.bytes.end());
          ASSERT_EQ(joined, expected(source, target, text, 1000, true).bytes);
        }
      }
    }
  });
}

TEST(Stages, AllUnitsOfUtf16) {
  for (const TextForm& source : textForms) {
    if (source.form != Form::utf16) continue;
    for (const TextForm& target : textForms) {
      if (!isDirect(source, target)) continue;
      const Pipeline pipeline(source.cei, target.cei);
      for (const uint32_t second : {0x0041u, 0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0xFFFDu}) {
        for (uint32_t first = 0; first < 0x10000; ++first) {
          const bool big = source.bigEndian;
          const auto high = [](uint32_t value) { return static_cast<uint8_t>(value >> 8); };
          const auto low = [](uint32_t value) { return static_cast<uint8_t>(value); };
          const uint8_t text[] = {big ? high(first) : low(first), big ? low(first) : high(first),
                                  big ? high(second) : low(second), big ? low(second) : high(second)};
          ASSERT_EQ(run(pipeline, text, 16), expected(source, target, text, 16, false))
              << source.cei << " to " << target.cei << ", input " << test::toHex(text);
        }
      }
    }
  }
}

TEST(Stages, AllCodePointsOfUtf32) {
  constexpr uint32_t beyond[] = {0x110000,   0x1FFFFF,   0x200000,   0x3FFFFFF, 0x4000000,
                                 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x3FFFFF,  0x400000};
  for (const TextForm& source : textForms) {
    if (source.form != Form::utf32) continue;
    for (const TextForm& target : textForms) {
      if (!isDirect(source, target)) continue;
      const Pipeline pipeline(source.cei, target.cei);
      std::u32string block;
      const auto flush = [&] {
        const Bytes text = utf32(block, source.bigEndian);
        block.clear();
        ASSERT_EQ(run(pipeline, text, 4096), expected(source, target, text, 4096, false))
            << source.cei << " to " << target.cei << ", input " << test::toHex(text);
      };
      for (char32_t c = 0; c < 0x110000; ++c) {
        block.push_back(c);
        if (block.size() == 512) {
          ASSERT_NO_FATAL_FAILURE(flush());
        }
      }
      for (const uint32_t value : beyond) {
        block.push_back(static_cast<char32_t>(value));
        ASSERT_NO_FATAL_FAILURE(flush());
      }
    }
  }
}

// All leads and all second bytes, with bytes at the bounds of the ranges behind them.
TEST(Stages, AllLeadsOfUtf8) {
  constexpr uint8_t bounds[] = {0x28, 0x7F, 0x80, 0x90, 0xA0, 0xBF, 0xC0, 0xE2};
  for (const TextForm& target : {textForms[2], textForms[4]}) {
    const Pipeline pipeline(U_UTF8_CE, target.cei);
    for (int lead = 0x80; lead < 0x100; ++lead) {
      for (int second = 0; second < 0x100; ++second) {
        for (const uint8_t third : bounds) {
          for (const uint8_t fourth : bounds) {
            const uint8_t text[] = {
                static_cast<uint8_t>(lead), static_cast<uint8_t>(second), third, fourth, 0x80, 0x41};
            ASSERT_EQ(run(pipeline, text, 32), expected(textForms[0], target, text, 32, false)) << test::toHex(text);
          }
        }
      }
    }
  }
}

TEST(Stages, LongSequencesOfUtf8) {
  constexpr uint8_t bounds[] = {0x28, 0x80, 0xBF, 0xC2, 0xF0};
  constexpr int count = sizeof bounds;
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  for (int lead = 0xF5; lead < 0x100; ++lead) {
    for (int mix = 0; mix < count * count * count * count * count; ++mix) {
      uint8_t text[8] = {static_cast<uint8_t>(lead), 0, 0, 0, 0, 0, 0x9F, 0x41};
      for (int i = 1, rest = mix; i <= 5; ++i, rest /= count) text[i] = bounds[rest % count];
      ASSERT_EQ(run(pipeline, text, 32), expected(textForms[0], textForms[2], text, 32, false)) << test::toHex(text);
    }
  }
}

TEST(Stages, AllLeadsOfUtfEbcdic) {
  constexpr uint8_t bounds[] = {0x00, 0x40, 0x41, 0x80, 0xC1, 0xFF};
  for (const TextForm& target : {textForms[2], textForms[4]}) {
    const Pipeline pipeline(U_UTFE_CE, target.cei);
    for (int lead = 0; lead < 0x100; ++lead) {
      for (int second = 0; second < 0x100; ++second) {
        for (const uint8_t third : bounds) {
          const uint8_t text[] = {static_cast<uint8_t>(lead), static_cast<uint8_t>(second), third, 0x72, 0x41, 0xC1};
          ASSERT_EQ(run(pipeline, text, 32), expected(textForms[1], target, text, 32, false)) << test::toHex(text);
        }
      }
    }
  }
}

TEST(Stages, StatusAfterSubstitution) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  // A short output after it is a short output; the flag still tells.
  EXPECT_EQ(resume(pipeline, hex("80 41 42"), 4, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("FD FF 41 00"), .consumed = 2, .substituted = true}));
  // An incomplete end too. The next call begins with a clear flag, and keeps other bits.
  progress = {};
  progress.flags = NLS_PROGRESS_DOUBLE_MODE | 0x10;
  const Outcome cut = resume(pipeline, hex("80 41 E2"), 16, progress);
  EXPECT_EQ(cut.status, nlsIncompleteInput);
  EXPECT_TRUE(cut.substituted);
  EXPECT_FALSE(resume(pipeline, hex("82 AC"), 16, progress).substituted);
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE | 0x10u);
}

TEST(Stages, EmptyAndTooNarrowCallsLeaveHeldBytes) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("E2 82"), 16, progress);
  EXPECT_EQ(resume(pipeline, {}, 16, progress), (Outcome{.status = 0, .pending = true, .held = hex("E2 82")}));
  EXPECT_EQ(resume(pipeline, hex("AC"), 1, progress),
            (Outcome{.status = nlsOutputTruncated, .pending = true, .held = hex("E2 82")}));
  EXPECT_EQ(resume(pipeline, hex("AC"), 16, progress).bytes, hex("AC 20"));
}

TEST(Stages, ForeignHeldCountsAreBounded) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  progress.pending = 1;
  progress.heldCount = 0xFFFFFFFF;
  for (uint8_t& byte : progress.held) byte = 'h';
  const Outcome outcome = resume(pipeline, hex("41"), 100, progress);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.bytes, utf16(U"hhhhhhhhA"));
  EXPECT_EQ(outcome.consumed, 1u);
}

TEST(Stages, StaleCountWithoutPendingIsNotRead) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  progress.heldCount = 3;
  progress.held[0] = 'x';
  EXPECT_EQ(resume(pipeline, hex("41"), 100, progress).bytes, hex("41 00"));
}

}  // namespace

}  // namespace transcode_test
