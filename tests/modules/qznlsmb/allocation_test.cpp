// The n-th request for memory fails, n = 1, 2, ... until the call succeeds.
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

int allowedAllocations = 0;

NlsBool8 allowSome(uint32_t /*size*/) { return allowedAllocations-- > 0; }

// Calls `body` with 0, 1, 2, ... requests allowed until it returns true. Returns how many it took.
template <class Body>
int untilItSucceeds(Body body) {
  for (int allowed = 0; allowed < 20; ++allowed) {
    allowedAllocations = allowed;
    host().memory.allowAllocation = allowSome;
    const bool done = body();
    host().memory.allowAllocation = nullptr;
    if (done) return allowed;
  }
  return -1;
}

TEST(MultiByteMemory, Constructor) {
  host();
  const uint32_t before = host().memory.context->inUse;
  for (int round = 0; round < 50; ++round) {
    const int needed = untilItSucceeds([] {
      NlsExtension* module = veldnls::createMultiByteModule(nullptr, nullptr);
      if (module == nullptr) return false;
      module->release(module);
      return true;
    });
    EXPECT_GE(needed, 1) << "a pool and a record";
  }
  EXPECT_LE(host().memory.context->inUse, before + 65536);
}

// Pipelines whose modules find no memory are refused, and leave nothing behind.
TEST(MultiByteMemory, LoadingBothModules) {
  for (const CEI source : {U_SHIFTJIS_CE, U_GB18030_CE}) {
    void* made = nullptr;
    ASSERT_EQ(VELDNLSLIB(5, host().input(), &made), 0u);
    auto* object = static_cast<QZNLS*>(made);
    int refused = 0;
    const int needed = untilItSucceeds([&] {
      TranscodingPipeline* pipeline = object->createPipeline(object, source, U_L_UNICODE_CE, nullptr, nullptr);
      if (pipeline == nullptr) {
        ++refused;
        return false;
      }
      pipeline->destroy(pipeline);
      return true;
    });
    EXPECT_GE(needed, 1);
    EXPECT_EQ(refused, needed);
    EXPECT_EQ(object->multiByteModule->gbModule != nullptr, source == U_GB18030_CE);
    object->destroy(object);
  }
}

// The stages themselves need none.
TEST(MultiByteMemory, ShortTextsStandOnTheStack) {
  for (const auto& [source, target] : {std::pair{U_SHIFTJIS_CE, U_L_UNICODE_CE},
                                       {U_UTF8_CE, U_IBM939_CE},
                                       {U_WLATIN1_CE, U_SHIFTJIS_CE},
                                       {U_ISO2022KR_CE, U_WLATIN1_CE},
                                       {U_GB18030_CE, U_UTF8_CE},
                                       {U_SHIFTJIS_CE, U_EUCJP_CE}}) {
    const Pipeline pipeline(source, target);
    const Bytes text(512, 0x41);
    uint8_t output[2048];
    allowedAllocations = 0;
    host().memory.allowAllocation = allowSome;
    const NlsStatus status =
        pipeline->transcodeResumable(pipeline, text.data(), 512, output, sizeof output, nullptr, nullptr, nullptr);
    host().memory.allowAllocation = nullptr;
    EXPECT_NE(status, nlsNoMemory) << source << " to " << target;
  }
}

}  // namespace
}  // namespace transcode_test
