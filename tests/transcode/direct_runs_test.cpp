// Short texts between multi-byte encodings, which go by a direct run: whatever it makes of them, both stages make, too.
#include <algorithm>
#include <array>

#include "reference/checked_route.h"

namespace transcode_test {

namespace {

// More than any text of these tests needs.
constexpr uint32_t mostRoom = 96;

struct Result {
  NlsStatus status = 0;
  uint32_t length = 0;
  std::array<uint8_t, mostRoom> room;  // all of it: neither run may leave a trace behind its length

  Result() { room.fill(0xA5); }
  bool operator==(const Result&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Result& result) {
  return stream << "status " << std::hex << result.status << std::dec << ", length " << result.length << ", "
                << test::toHex(result.room);
}

// The plain run tries the direct one; the resumable run doesn't, though it gets no record either.
void compare(TranscodingPipeline* pipeline, const Bytes& text, uint32_t room) {
  const auto length = static_cast<uint32_t>(text.size());
  Result direct;
  direct.status = pipeline->transcode(pipeline, text.data(), length, direct.room.data(), room, &direct.length, nullptr);
  Result both;
  both.status = pipeline->transcodeResumable(pipeline, text.data(), length, both.room.data(), room, &both.length,
                                             nullptr, nullptr);
  if (direct == both) return;
  ADD_FAILURE() << pipeline->sourceCei << " to " << pipeline->targetCei << ", room " << room << ", text "
                << test::toHex(text) << "\ndirect: " << direct << "\nboth stages: " << both;
}

// The plain run of a pair that needs no conversion copies.
bool hasDirectRun(const TranscodingPipeline* pipeline) {
  return pipeline != nullptr && pipeline->twoStage != 0 && !isCopied(pipeline->sourceCei, pipeline->targetCei) &&
         pipeline->source.direct != nullptr && pipeline->target.directForm != 0;
}

// What a direct run writes of a text, 0 if it leaves it to both stages.
uint32_t directLength(const TranscodingPipeline* pipeline, const Bytes& text) {
  uint8_t out[mostRoom];
  return pipeline->source.direct(&pipeline->source, &pipeline->target, text.data(), static_cast<uint32_t>(text.size()),
                                 out, mostRoom);
}

void add(Bytes& text, uint32_t code) {
  text.insert(text.end(), {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)});
}

std::vector<uint32_t> codesOfDirectRuns(const TranscodingPipeline* pipeline) {
  std::vector<uint32_t> codes;
  Bytes text(2);
  for (uint32_t code = 0x8000; code <= 0xFFFF; ++code) {
    text = {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
    if (directLength(pipeline, text) != 0) codes.push_back(code);
  }
  return codes;
}

// Each code once, in texts as long as direct runs take, with letters between codes here and there.
void compareFullTexts(TranscodingPipeline* pipeline, const std::vector<uint32_t>& codes, bool everyRoom) {
  constexpr size_t mostBytes = 32;
  Bytes text;
  for (size_t i = 0; i < codes.size(); ++i) {
    if (i % 7 == 3) text.push_back('a');
    add(text, codes[i]);
    if (text.size() + 3 <= mostBytes && i + 1 != codes.size()) continue;
    const uint32_t length = directLength(pipeline, text);
    ASSERT_NE(length, 0u) << pipeline->sourceCei << " to " << pipeline->targetCei << ": " << test::toHex(text);
    for (const uint32_t room : {mostRoom, length, length - 1, length / 2}) compare(pipeline, text, room);
    for (uint32_t room = 0; everyRoom && room < length + 3; ++room) compare(pipeline, text, room);
    text.clear();
  }
}

// Texts that a direct run takes up to something behind a few characters, in every room.
void compareTails(TranscodingPipeline* pipeline, const std::vector<uint32_t>& codes) {
  Bytes front{'a'};
  add(front, codes.front());
  add(front, codes[codes.size() / 2]);
  add(front, codes.back());
  const Bytes tails[] = {{},
                         {front[1]},
                         {front[1], 0x20},
                         {front[1], 'a', 'b'},
                         {0x80, 'a'},
                         {0xFF, 'a'},
                         {0xFF, 0xFF},
                         {0xA0, 0xA0},
                         {0xFD, 0xA1, 'a'},
                         {0x85, 0x40},
                         {0x8E, 0xB1},
                         {0xB1, 'a'},
                         {0x8F, 0xA2, 0xAF},
                         {0x8E, 0xA2, 0xA1, 0xA1},
                         {0x1B, '$', 'B', 'a'},
                         {0x0E, 'a'},
                         {0},
                         {0x81, 0x30, 0x81, 0x30},
                         {0x81, 0x30, 0x81},
                         {0x84, 0x31, 0xA4, 0x37}};
  for (const Bytes& tail : tails) {
    Bytes text = front;
    text.insert(text.end(), tail.begin(), tail.end());
    for (uint32_t room = 0; room <= 20; ++room) compare(pipeline, text, room);
    text.push_back('a');
    compare(pipeline, text, mostRoom);
  }
}

// Up to lengths that no direct run takes, ends inside a character among them.
void compareLengths(TranscodingPipeline* pipeline, const std::vector<uint32_t>& codes) {
  Bytes text;
  for (size_t i = 0; text.size() < 40; ++i) {
    add(text, codes[i * 31 % codes.size()]);
    if (i % 3 == 2) text.push_back('a');
  }
  for (size_t length = 0; length <= text.size(); ++length) {
    const Bytes part(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length));
    for (const uint32_t room : {mostRoom, 32u, 31u}) compare(pipeline, part, room);
  }
}

void compareTexts(TranscodingPipeline* pipeline, bool everyRoom) {
  const std::vector<uint32_t> codes = codesOfDirectRuns(pipeline);
  ASSERT_FALSE(codes.empty()) << pipeline->sourceCei << " to " << pipeline->targetCei;
  compareFullTexts(pipeline, codes, everyRoom);
  compareTails(pipeline, codes);
  compareLengths(pipeline, codes);
}

// Without shifts, and with ASCII below 0x80.
bool isPlainRow(CEI cei) {
  const EncodingText& row = encodingText(cei);
  return row.isMultiByte() && row.shiftLength() == 0 && row.blank() == ' ';
}

// The set of dec-jp has codes that begin with a single byte, 8E, and so it is with types 9 to 11; the blank of hp15-tw
// begins with one. Kernels don't look at leads.
constexpr CEI notReadByKernels[] = {9, 10, 11, U_HP15TW_CE, U_DECJP_CE};

bool mustHaveDirectRun(CEI source, CEI target) {
  return isPlainRow(source) && isPlainRow(target) && !isCopied(source, target) &&
         std::ranges::count(notReadByKernels, source) == 0;
}

// One of each kind of lead bytes, and GB18030.
bool isCharacteristic(CEI cei) {
  constexpr CEI few[] = {U_SHIFTJIS_CE, U_EUCJP_CE, U_BIG5_CE, U_GB18030_CE};
  return std::ranges::count(few, cei) != 0;
}

TEST(DirectRuns, EveryPairOfRowsWithoutShifts) {
  const test::DbcsLanguage language(host(), u"UNKNOWN");
  loadGbModule();
  for (const CEI source : multiByteCeis()) {
    for (const CEI target : multiByteCeis()) {
      const Pipeline pipeline(source, target);
      ASSERT_EQ(hasDirectRun(pipeline), mustHaveDirectRun(source, target)) << source << " to " << target;
      if (!hasDirectRun(pipeline)) continue;
      ASSERT_NO_FATAL_FAILURE(compareTexts(pipeline, isCharacteristic(source) && isCharacteristic(target)));
      ASSERT_FALSE(HasFailure());
    }
  }
}

// A pipeline to GB18030 that is made while the module isn't there writes by pairs, for ever.
TEST(DirectRuns, ToGb18030WithoutItsModule) {
  const test::DbcsLanguage language(host(), u"UNKNOWN");
  unloadMultiByteModules();
  for (const CEI source : multiByteCeis()) {
    if (source == U_GB18030_CE || !mustHaveDirectRun(source, U_GB18030_CE)) continue;
    const Pipeline pipeline(source, U_GB18030_CE);
    ASSERT_TRUE(hasDirectRun(pipeline));
    ASSERT_FALSE(gbModuleIsLoaded());
    ASSERT_NO_FATAL_FAILURE(compareTexts(pipeline, false));
    ASSERT_FALSE(HasFailure());
  }
}

// Also those that hide characters of the sets, which a direct run would take.
TEST(DirectRuns, UserCharactersComeFirst) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  const Bytes text = hex("82 A0");
  ASSERT_EQ(plain(pipeline, text, 8), (Outcome{.bytes = hex("A4 A2")}));
  NlsCodePair fromCode{0x82A0, 0x3044};
  CodeOverlay ofSource{1, &fromCode};
  pipeline->source.overlay = &ofSource;
  EXPECT_EQ(plain(pipeline, text, 8), (Outcome{.bytes = hex("A4 A4")}));
  pipeline->source.overlay = nullptr;
  NlsCodePair toCode{0x3042, 0xA6A4};
  CodeOverlay ofTarget{1, &toCode};
  pipeline->target.overlay = &ofTarget;
  EXPECT_EQ(plain(pipeline, text, 8), (Outcome{.bytes = hex("A4 A6")}));
  pipeline->target.overlay = nullptr;
}

}  // namespace

}  // namespace transcode_test
