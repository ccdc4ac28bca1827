// Short texts between multi-byte encodings, which go by a direct run: whatever it makes of them, both stages make, too.
#include <initializer_list>

#include "transcode/harness.h"

namespace transcode_test {

namespace {

struct Route {
  CEI source;
  CEI target;
};

// Lead bytes in one range and in two, high bits, GB18030; to pairs and, with its module loaded, to GB18030.
const Route routes[] = {
    {U_SHIFTJIS_CE, U_EUCJP_CE}, {U_EUCJP_CE, U_SHIFTJIS_CE}, {U_GB18030_CE, U_BIG5_CE}, {U_BIG5_CE, U_GB18030_CE},
    {U_EUCCN_CE, U_GB18030_CE},  {U_GB18030_CE, U_EUCCN_CE},  {U_EUCKR_CE, U_EUCCN_CE},  {U_DECJP_CE, U_EUCJP_CE},
};

struct Outcome {
  NlsStatus status;
  uint32_t length;
  Bytes room;  // all of it: neither run may leave a trace behind its length

  bool operator==(const Outcome&) const = default;
};

// The plain run tries the direct one; the resumable run doesn't, though it gets no record either.
void compare(TranscodingPipeline* pipeline, const Bytes& text, uint32_t room) {
  const auto length = static_cast<uint32_t>(text.size());
  Outcome direct{0, 0, Bytes(room, 0xA5)};
  direct.status = pipeline->transcode(pipeline, text.data(), length, direct.room.data(), room, &direct.length, nullptr);
  Outcome both{0, 0, Bytes(room, 0xA5)};
  both.status = pipeline->transcodeResumable(pipeline, text.data(), length, both.room.data(), room, &both.length,
                                             nullptr, nullptr);
  EXPECT_EQ(direct, both);
}

TEST(DirectRuns, EveryCodeAmongOthersInEveryRoom) {
  const Pipeline loadsGb18030(U_GB18030_CE, U_L_UNICODE_CE);
  for (const Route& route : routes) {
    const Pipeline pipeline(route.source, route.target);
    ASSERT_NE(pipeline->source.direct == nullptr, route.source != U_DECJP_CE) << route.source;
    for (uint32_t code = 0x8000; code <= 0xFFFF; ++code) {
      const auto first = static_cast<uint8_t>(code >> 8);
      const auto second = static_cast<uint8_t>(code);
      for (const uint32_t room : {0u, 2u, 3u, 5u, 16u}) compare(pipeline, {'a', first, second, 'b'}, room);
      compare(pipeline, {first, second, first, second, first}, 16);
      if (HasFailure()) FAIL() << route.source << " to " << route.target << ", code " << std::hex << code;
    }
  }
}

TEST(DirectRuns, EveryLength) {
  for (const Route& route : routes) {
    const Pipeline pipeline(route.source, route.target);
    for (const std::initializer_list<uint8_t> piece :
         {std::initializer_list<uint8_t>{'a'}, {0xB0, 0xA1}, {0xB0, 0xA1, 'a'}}) {
      Bytes text;
      for (int i = 0; i < 20; ++i) {
        compare(pipeline, text, 200);
        text.insert(text.end(), piece);
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test
