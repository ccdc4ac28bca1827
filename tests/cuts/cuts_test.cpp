// A text converted in pieces comes out as the whole, wherever it is cut.
#include <gtest/gtest.h>

#include <algorithm>

#include "cuts/exceptions.h"
#include "cuts/feed.h"
#include "reference/encoding_text.h"

namespace cuts_test {

namespace {

using bounds_test::Condition;
using bounds_test::makeText;
using bounds_test::Route;

constexpr size_t shortLength = 17;
constexpr size_t middleLength = 41;
constexpr size_t longLength = 2100;  // beyond what scratch memory on the stack holds
constexpr uint32_t seeds = 6;

size_t plenty(Span text) { return 6 * text.size() + 32; }

class Cuts : public testing::TestWithParam<Route> {
 protected:
  static TranscodingPipeline* pipeline() { return GetParam().pipeline(); }

  // Every piece of shifted text stands alone: it leaves double-byte mode at its end, and the next enters it again.
  static Fed joined(Fed fed) {
    if (!bounds_test::isMultiByte(GetParam().target)) return fed;
    const transcode_test::EncodingText& row = transcode_test::encodingText(GetParam().target.cei);
    Bytes seam = row.shiftIn;
    seam.insert(seam.end(), row.shiftOut.begin(), row.shiftOut.end());
    while (!seam.empty()) {
      const auto found = std::ranges::search(fed.bytes, seam);
      if (found.empty()) break;
      fed.bytes.erase(found.begin(), found.end());
    }
    return fed;
  }
  static Fed fedFrom(Span text, std::span<const size_t> lengths, size_t room, TranscodeProgress& progress) {
    return joined(feed(pipeline(), text, lengths, room, progress));
  }
  static Fed inPieces(Span text, std::span<const size_t> lengths) {
    TranscodeProgress progress{};
    return fedFrom(text, lengths, plenty(text), progress);
  }
  static Fed whole(Span text) { return inPieces(text, {}); }

  // In which every character fits, with its shifts.
  static size_t leastRoom() { return std::max<size_t>(6, 2 * bounds_test::shiftInOf(GetParam().target).size() + 2); }

  // Texts of the route's source, but for those with a reviewed exception.
  static std::vector<Bytes> texts(size_t length, Way way) {
    std::vector<Bytes> all;
    for (uint32_t seed = 0; seed < seeds; ++seed) {
      for (const Condition condition : {Condition::whole, Condition::basic, Condition::damaged}) {
        Bytes text = makeText(GetParam().source.kind, condition, seed, length);
        if (exceptionFor(way, GetParam(), text) == nullptr) all.push_back(std::move(text));
      }
    }
    EXPECT_TRUE(!all.empty() || way == Way::littleRoom) << "exceptions leave no text";
    return all;
  }
};

TEST_P(Cuts, AtEveryPlaceWithEmptyPieces) {
  for (const size_t length : {shortLength, middleLength}) {
    for (const Bytes& text : texts(length, Way::cuts)) {
      const Fed wanted = whole(text);
      for (size_t cut = 0; cut <= text.size(); ++cut) {
        const size_t plain[] = {cut};
        ASSERT_EQ(inPieces(text, plain), wanted) << "cut at " << cut << ", input " << test::toHex(text);
        const size_t withEmpty[] = {0, cut, 0, 0, text.size() - cut, 0};
        ASSERT_EQ(inPieces(text, withEmpty), wanted) << "cut at " << cut << ", input " << test::toHex(text);
      }
    }
  }
}

TEST_P(Cuts, AtEveryTwoPlaces) {
  for (const Bytes& text : texts(shortLength, Way::cuts)) {
    const Fed wanted = whole(text);
    for (size_t first = 0; first <= text.size(); ++first) {
      for (size_t second = first; second <= text.size(); ++second) {
        const size_t lengths[] = {first, second - first};
        ASSERT_EQ(inPieces(text, lengths), wanted)
            << "cut at " << first << " and " << second << ", input " << test::toHex(text);
      }
    }
  }
}

TEST_P(Cuts, InPiecesOfOneLength) {
  for (const size_t length : {middleLength, longLength}) {
    for (const Bytes& text : texts(length, Way::cuts)) {
      const Fed wanted = whole(text);
      for (size_t piece = 1; piece <= 9; ++piece) {
        const std::vector<size_t> lengths(text.size() / piece, piece);
        ASSERT_EQ(inPieces(text, lengths), wanted) << "pieces of " << piece << ", input " << test::toHex(text);
      }
    }
  }
}

// Around the sizes at which a piece and its held bytes leave the stack.
TEST_P(Cuts, NearTheEndOfScratchMemory) {
  for (const Bytes& text : texts(longLength, Way::cuts)) {
    const Fed wanted = whole(text);
    for (size_t cut = 1; cut <= 8; ++cut) {
      for (const size_t second : {size_t{2040}, size_t{2044}, size_t{2047}, size_t{2048}, size_t{2049}}) {
        const size_t lengths[] = {cut, second};
        ASSERT_EQ(inPieces(text, lengths), wanted) << "cut at " << cut << ", then " << second;
      }
    }
  }
}

TEST_P(Cuts, WithTheRecordOfATextBefore) {
  for (const Bytes& text : texts(middleLength, Way::cuts)) {
    for (const Bytes& before : texts(shortLength, Way::cuts)) {
      TranscodeProgress progress{};
      const size_t lengths[] = {5, 3, 1};
      feed(pipeline(), before, lengths, plenty(before), progress);
      if (progress.pending != 0 || (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0) continue;
      ASSERT_EQ(fedFrom(text, lengths, plenty(text), progress), whole(text)) << test::toHex(text);
    }
  }
}

// Every call but the last ends for want of room, and the next goes on from there.
TEST_P(Cuts, WithLittleRoom) {
  for (const Bytes& text : texts(middleLength, Way::littleRoom)) {
    if (exceptionFor(Way::cuts, GetParam(), text) != nullptr) continue;
    const Fed wanted = whole(text);
    for (size_t room = leastRoom(); room <= 16; ++room) {
      for (const size_t piece : {1u, 2u, 3u, 7u, 40u}) {
        const std::vector<size_t> lengths(text.size() / piece, piece);
        TranscodeProgress progress{};
        ASSERT_EQ(fedFrom(text, lengths, room, progress), wanted)
            << "room " << room << ", pieces of " << piece << ", input " << test::toHex(text);
      }
    }
  }
}

// A call without room takes nothing but shift sequences and changes nothing.
TEST_P(Cuts, AfterACallWithoutRoom) {
  for (const Bytes& text : texts(shortLength, Way::cuts)) {
    const Fed wanted = whole(text);
    for (size_t cut = 0; cut < text.size(); ++cut) {
      const Span rest = Span(text).subspan(cut);
      TranscodeProgress progress{};
      const size_t one[] = {cut};
      Fed fed = feed(pipeline(), Span(text).first(cut), one, plenty(text), progress);
      const size_t again = fed.notTaken;
      Span given = Span(text).subspan(cut - again);
      uint32_t written = 1;
      const NlsStatus status = pipeline()->transcodeResumable(
          pipeline(), given.data(), static_cast<uint32_t>(given.size()), nullptr, 0, &written, &progress, nullptr);
      ASSERT_EQ(written, 0u);
      if (status == nlsIncompleteInput) continue;  // a text shorter than a character is held without room
      ASSERT_TRUE(progress.consumed == 0 || !bounds_test::shiftInOf(GetParam().source).empty());
      given = given.subspan(progress.consumed);
      const Fed more = feed(pipeline(), given, {}, plenty(text), progress);
      fed.bytes.insert(fed.bytes.end(), more.bytes.begin(), more.bytes.end());
      ASSERT_EQ(joined(fed).bytes, wanted.bytes) << "cut at " << cut << ", input " << test::toHex(text);
      ASSERT_EQ(more.held, wanted.held) << "cut at " << cut << ", input " << test::toHex(rest);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Routes, Cuts, testing::ValuesIn(bounds_test::routes()),
                         [](const auto& route) { return route.param.name(); });

// The exceptions themselves.

TEST(CutExceptions, APairCutBetweenCallsIsTwoSubstitutions) {
  const Bytes pair = test::fromHex("3D D8 00 DE 41 00");
  const transcode_test::Pipeline pipeline(U_L_UNICODE_CE, U_WLATIN1_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(feed(pipeline, pair, {}, 8, progress).bytes, test::fromHex("1A 41"));
  const size_t cut[] = {2};
  EXPECT_EQ(feed(pipeline, pair, cut, 8, progress).bytes, test::fromHex("1A 1A 41"));
}

TEST(CutExceptions, ASurrogateAtTheEndOfAPieceIsLostBetweenTwoSteps) {
  // U+10D83D comes out of the first step as the unit D83D, which the second takes for half of a pair.
  const Bytes text = test::fromHex("F4 8D A0 BD 41 42");
  const transcode_test::Pipeline pipeline(U_UTF8_CE, U_UTF8_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(feed(pipeline, text, {}, 32, progress).bytes, test::fromHex("F0 9F 91 81 42"));
  const size_t cut[] = {4};
  EXPECT_EQ(feed(pipeline, text, cut, 32, progress).bytes, test::fromHex("41 42"));
}

TEST(CutExceptions, APairWithRoomForOneUnitIsReplaced) {
  const Bytes text = test::fromHex("41 F0 9F 98 80 42");
  const transcode_test::Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  const Fed fed = feed(pipeline, text, {}, 4, progress);
  EXPECT_EQ(fed.bytes, test::fromHex("41 00 FD FF 42 00"));
  EXPECT_TRUE(fed.substituted);
}

TEST(CutExceptions, ACheckHoldsAWholeUnit) {
  const Bytes text = test::fromHex("41 00 42 00 43");
  const transcode_test::Pipeline pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  const Fed fed = feed(pipeline, text, {}, 2, progress);
  EXPECT_EQ(fed.bytes, test::fromHex("41 00"));
  EXPECT_EQ(fed.held, test::fromHex("42 00 43"));
}

class NoExceptionIsUnused : public testing::Environment {
  void TearDown() override {
    // Parts of the tests don't need them all.
    if (testing::GTEST_FLAG(filter) != "*") return;
    EXPECT_EQ(unusedExceptions(), std::vector<std::string>());
  }
};

const auto* const noExceptionIsUnused = testing::AddGlobalTestEnvironment(new NoExceptionIsUnused);

}  // namespace

}  // namespace cuts_test
