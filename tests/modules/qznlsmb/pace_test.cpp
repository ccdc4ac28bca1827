// The inner loops of the stages take nothing on themselves: with and without them a run leaves the same behind.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

using veldnls::Pace;

class Paces : public testing::Test {
 protected:
  std::mt19937 random_{20031};

  // One run at either pace, with whatever capacity, record and options.
  void compare(StageRoute& route, Span text) {
    const size_t full = 4 * text.size() + 8;
    const size_t capacity = random_() % 3 == 0 ? full : random_() % (full / 2);
    const bool resumable = random_() % 2 == 0;
    TranscodeProgress start{};
    start.flags = random_() % 2 == 0 ? NLS_PROGRESS_DOUBLE_MODE : 0;
    const TranscodeOptions* options = random_() % 2 == 0 ? &dropBlanks : nullptr;
    const auto outcome = [&](Pace pace) {
      route.setPace(pace);
      TranscodeProgress progress = start;
      const Outcome left =
          resumable ? resume(route, text, capacity, progress, options) : run(route, text, capacity, options);
      return std::pair(left, progress.flags);
    };
    const auto slow = outcome(Pace::everyCharacter);
    for (const Pace pace : {Pace::loops, Pace::kernels, Pace::kernelsForAll}) {
      const auto quick = outcome(pace);
      ASSERT_EQ(quick.first, slow.first) << "pace " << static_cast<int>(pace) << ", capacity " << capacity << ", text "
                                         << test::toHex(text);
      ASSERT_EQ(quick.second, slow.second);
    }
  }
};

TEST_F(Paces, ToUnicode) {
  for (const CEI source : multiByteRows()) {
    for (const CEI target : unicodeForms) {
      SCOPED_TRACE(testing::Message() << source << " to " << target);
      StageRoute route(source, target);
      ASSERT_EQ(route.setup, 0u);
      for (int i = 0; i < 60 && !HasFailure(); ++i) compare(route, randomText(source, random_() % 120, random_));
      Bytes noise(random_() % 60);
      for (uint8_t& byte : noise) byte = static_cast<uint8_t>(random_());
      compare(route, noise);
    }
  }
}

TEST_F(Paces, FromUnicode) {
  for (const CEI target : multiByteRows()) {
    for (const CEI source : unicodeForms) {
      SCOPED_TRACE(testing::Message() << source << " to " << target);
      StageRoute route(source, target);
      ASSERT_EQ(route.setup, 0u);
      for (int i = 0; i < 60 && !HasFailure(); ++i) {
        compare(route, randomUnicode(source, target, random_() % 60, random_));
      }
    }
  }
}

// Every code and every unit by itself, which random texts may miss.
TEST_F(Paces, EveryCodeAndEveryUnit) {
  for (const CEI cei : multiByteRows()) {
    SCOPED_TRACE(cei);
    StageRoute to(cei, U_L_UNICODE_CE);
    StageRoute from(U_L_UNICODE_CE, cei);
    const MultiByteProfile& profile = row(cei).profile;
    for (uint32_t high = 0; high < 0x100; ++high) {
      Bytes codes(profile.shiftOut, profile.shiftOut + profile.shiftLength);
      std::u32string units;
      for (uint32_t low = 0; low < 0x100; ++low) {
        codes.push_back(static_cast<uint8_t>(high));
        codes.push_back(static_cast<uint8_t>(low));
        units.push_back(static_cast<char32_t>(high * 256 + low));
      }
      const Bytes text = utf16(units);
      for (auto* route : {&to, &from}) {
        const Span input = route == &to ? codes : text;
        route->setPace(Pace::everyCharacter);
        const Outcome slow = run(*route, input, 4096);
        for (const Pace pace : {Pace::loops, Pace::kernelsForAll}) {
          route->setPace(pace);
          ASSERT_EQ(run(*route, input, 4096), slow) << std::hex << high;
        }
      }
    }
  }
}

}  // namespace
}  // namespace transcode_test
