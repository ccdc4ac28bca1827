// The module's record.
#include "core/qznlsstub.h"
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlsmb/rows.h"
#include "support/module_record.h"

namespace transcode_test {
namespace {

TEST(MultiByteModuleRecord, ConstructorFillsIt) {
  host();
  int marker = 0;
  auto* module = reinterpret_cast<MultiByteModule*>(veldnls::createMultiByteModule(&marker, nullptr));
  ASSERT_NE(module, nullptr);
  test::expectModuleHeader(*module, &marker);
  for (const NlsMultiByteSetup slot :
       {module->setupByteToMultibyte, module->setupMultibyteToByte, module->setupUtf16ToMultibyte,
        module->setupMultibyteToUtf16, module->setupUtf32ToMultibyte, module->setupMultibyteToUtf32,
        module->setupUtf8ToMultibyte, module->setupMultibyteToUtf8, module->setupUtfeToMultibyte,
        module->setupMultibyteToUtfe}) {
    EXPECT_NE(slot, nullptr);
  }
  EXPECT_EQ(module->nls, nullptr);
  EXPECT_EQ(module->gbModule, nullptr);
  EXPECT_EQ(module->release(module), 0u);
}

TEST(MultiByteModuleRecord, IsLoadedOnceAndKnowsItsObject) {
  const Pipeline first(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  const MultiByteModule* module = nls()->multiByteModule;
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(module->nls, nls());
  const Pipeline second(U_UTF8_CE, U_IBM939_CE);
  EXPECT_EQ(nls()->multiByteModule, module);
}

int destroyed;
bool poolStood;
MultiByteModule* released;

// The inner module goes while the outer one's pool still stands.
TEST(MultiByteModuleRecord, ReleaseDestroysTheInnerModuleFirst) {
  host();
  released = reinterpret_cast<MultiByteModule*>(veldnls::createMultiByteModule(nullptr, nullptr));
  ASSERT_NE(released, nullptr);
  static Gb18030Module inner{};
  inner.destroy = [](void* handle) -> NlsStatus {
    EXPECT_EQ(handle, &inner);
    ++destroyed;
    void* block = veldnls::nlsPoolAlloc(released->pool, 64, 0);
    poolStood = block != nullptr;
    return 0;
  };
  released->gbModule = &inner;
  EXPECT_EQ(released->release(released), 0u);
  EXPECT_EQ(destroyed, 1);
  EXPECT_TRUE(poolStood);
}

}  // namespace
}  // namespace transcode_test
