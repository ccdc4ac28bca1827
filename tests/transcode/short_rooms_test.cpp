// Short texts between multi-byte encodings of all kinds in every room: what the reference makes of them, the library
// does, with a record and without one.
#include <algorithm>

#include "reference/checked_route.h"

namespace transcode_test {

namespace {

struct Route {
  CEI source;
  CEI target;
};

// Hosts' shifts of one byte and of two, sequences of ISO 2022 and of seven bits, lead bytes, high bits, GB18030.
const Route routes[] = {
    {U_IBM939_CE, U_EUCJP_CE},     {U_NECJP_CE, U_EUCJP_CE},      {U_EUCJP_CE, U_NECJP_CE},
    {U_ISO2022JP_CE, U_IBM939_CE}, {U_IBM930_CE, U_ISO2022JP_CE}, {U_JIS7_CE, U_SHIFTJIS_CE},
    {U_SHIFTJIS_CE, U_JIS7_CE},    {U_HITACHITW_CE, U_BIG5_CE},   {U_BIG5_CE, U_HITACHITW_CE},
    {U_PCJIS_CE, U_GB18030_CE},    {U_GB18030_CE, U_PCJIS_CE},    {U_GB18030_CE, U_ISO2022CNGB_CE},
    {U_ISO2022KR_CE, U_IBM933_CE}, {U_DECJP_CE, U_HITACHIJP_CE},  {U_ISO2022CNCNS_CE, U_EUCTW_CE},
    {U_SHIFTJIS_CE, U_GB18030_CE},
};

// Characters of the first plane that an encoding has, every few of them.
std::vector<char32_t> charactersOf(CEI cei) {
  constexpr size_t step = 11;
  const Pipeline pipeline(U_L_UNICODE_CE, cei);
  std::vector<char32_t> characters;
  size_t found = 0;
  for (char32_t character = 0x80; character < 0x10000; ++character) {
    if (character == 0xD800) character = 0xE000;
    uint8_t out[16];
    uint32_t length = 0;
    const Bytes text = utf16({&character, 1});
    if (pipeline->transcode(pipeline, text.data(), 2, out, sizeof out, &length, nullptr) != 0) continue;
    if (found++ % step == 0) characters.push_back(character);
  }
  return characters;
}

void checkEveryRoom(const CheckedRoute& route, const Bytes& text) {
  const size_t full = plain(route.pipeline(), text, CheckedRoute::roomFor(text)).bytes.size();
  for (size_t room = 0; room <= full + 2; ++room) {
    ASSERT_NO_FATAL_FAILURE(route.check(text, room, false, false));
    ASSERT_EQ(plain(route.pipeline(), text, room), run(route.pipeline(), text, room))
        << route.name() << ", room " << room << ", input " << test::toHex(text);
  }
}

// Each character between others of one byte, and beside the one before it; whole, and without the last byte.
TEST(ShortRooms, EveryRoomOfCharactersOfEveryKind) {
  loadGbModule();
  for (const Route& given : routes) {
    const CheckedRoute route(given.source, given.target);
    const Pipeline fromUnicode(U_L_UNICODE_CE, given.source);
    const std::vector<char32_t> characters = charactersOf(given.source);
    ASSERT_GT(characters.size(), 500u) << route.name();
    char32_t before = characters.back();
    for (const char32_t character : characters) {
      for (const std::u32string& content : {std::u32string{U'a', character, U'b'}, {before, character}}) {
        Bytes text = run(fromUnicode, utf16(content), 64).bytes;
        ASSERT_NO_FATAL_FAILURE(checkEveryRoom(route, text));
        text.pop_back();
        ASSERT_NO_FATAL_FAILURE(checkEveryRoom(route, text));
      }
      before = character;
    }
  }
}

}  // namespace

}  // namespace transcode_test
