// The module's record, and the table of direct maps.
#include "modules/qznlssb/qznlssb.h"

#include <algorithm>

#include "core/qznlsstub.h"
#include "modules/qznlssb/direct_byte_maps.h"
#include "modules/qznlssb/route.h"
#include "modules/qznlssb/setup.h"
#include "support/module_record.h"

namespace test {
namespace {

using Module = SingleByteTest;

TEST_F(Module, ConstructorFillsTheRecord) {
  int marker = 0;
  NlsExtension* extension = veldnls::createSingleByteModule(&marker, nullptr);
  ASSERT_NE(extension, nullptr);
  auto* module = reinterpret_cast<SingleByteModule*>(extension);
  expectModuleHeader(*module, &marker);
  EXPECT_NE(module->setupByteToByte, nullptr);
  EXPECT_NE(module->setupByteToUnicode, nullptr);
  EXPECT_NE(module->setupWideToByte, nullptr);
  EXPECT_NE(module->setupUtf8ToByte, nullptr);
  EXPECT_EQ(module->release(module), 0u);
}

EncodingDescriptor named(std::u16string_view shortName) {
  EncodingDescriptor row{};
  std::ranges::copy(shortName, row.shortName);
  return row;
}

veldnls::DirectByteMap mapRow(std::string_view key, const uint8_t* map) {
  veldnls::DirectByteMap row{};
  for (size_t i = 0; i < key.size(); ++i) row.key[2 * i] = static_cast<uint8_t>(key[i]);
  row.map = map;
  return row;
}

TEST(DirectByteMaps, AreFoundByBothShortNames) {
  const uint8_t maps[4][256] = {};
  const veldnls::DirectByteMap rows[] = {mapRow("ab  cd  ", maps[0]), mapRow("ab  ce  ", maps[1]),
                                         mapRow("abc cd  ", maps[2]), mapRow("wlt1lat1", maps[3])};
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"ab  "), named(u"cd  ")), maps[0]);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"ab  "), named(u"ce  ")), maps[1]);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"abc "), named(u"cd  ")), maps[2]);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"wlt1"), named(u"lat1")), maps[3]);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"lat1"), named(u"wlt1")), nullptr);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"aa  "), named(u"cd  ")), nullptr);
  EXPECT_EQ(veldnls::findDirectByteMap(rows, named(u"zzzz"), named(u"zzzz")), nullptr);
}

TEST(DirectByteMaps, NoRowsFindNothing) {
  EXPECT_EQ(veldnls::findDirectByteMap({}, named(u"ab  "), named(u"cd  ")), nullptr);
}

// What the module itself brings: the map of every pair is built.
TEST(DirectByteMaps, NoPairHasOne) { EXPECT_TRUE(veldnls::directByteMaps().empty()); }

TEST_F(Module, AMapByHandGoesBeforeOneThatIsBuilt) {
  uint8_t byHand[256];
  for (uint32_t byte = 0; byte < 256; ++byte) byHand[byte] = static_cast<uint8_t>(255 - byte);
  const EncodingDescriptor& source = row(U_PCOEM850_CE);
  const EncodingDescriptor& target = row(U_WLATIN1_CE);
  const std::u16string names = std::u16string(source.shortName, 4) + std::u16string(target.shortName, 4);
  const veldnls::DirectByteMap rows[] = {mapRow(std::string(names.begin(), names.end()), byHand)};

  TranscodingPipeline pipeline{};
  pipeline.nls = nls;
  EXPECT_EQ(veldnls::setupWithDirectMaps(rows, nls, &pipeline, &source, &target), 0u);
  EXPECT_EQ(pipeline.source.byteMap, byHand);
  EXPECT_EQ(pipeline.flags, 0u);
  uint8_t output = 0;
  EXPECT_EQ(pipeline.transcode(&pipeline, "\x01", 1, &output, 1, nullptr, nullptr), 0u);
  EXPECT_EQ(output, 0xFE);

  // The other way there is no row.
  const Route back(nls, U_WLATIN1_CE, U_PCOEM850_CE);
  TranscodingPipeline built{};
  built.nls = nls;
  EXPECT_EQ(veldnls::setupWithDirectMaps(rows, nls, &built, &target, &source), 0u);
  EXPECT_EQ(built.flags, NLS_PIPELINE_OWNS_BYTE_MAP);
  EXPECT_TRUE(std::equal(built.source.byteMap, built.source.byteMap + 256, back.pipeline.source.byteMap));
  veldnls::nlsPoolFree(nls->pool, const_cast<uint8_t*>(built.source.byteMap));
}

}  // namespace
}  // namespace test
