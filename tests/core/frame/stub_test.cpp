// The adaptation layer: defaults, assertion stubs, a host's own services, the loader and the journal.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/qznlsstub.h"
#include "support/death.h"
#include "support/host.h"
#include "veldnls/hostlib/ht.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls {
namespace {

using test::Ending;
using test::runInChild;

struct Stub {
  const char* name;
  void (*call)();
  int line;
};

const Stub stubs[] = {
    {"nlsLockAcquire", [] { nlsLockAcquire(NLS_MARKER_HANDLE, 1, 1); }, 357},
    {"nlsLockRelease", [] { nlsLockRelease(NLS_MARKER_HANDLE); }, 368},
    {"nlsTreeSearch", [] { nlsTreeSearch(NLS_MARKER_HANDLE, u"t0a0en", 12); }, 409},
    {"nlsTreeInsert", [] { nlsTreeInsert(NLS_MARKER_HANDLE, nullptr, u"t0a0en", 12); }, 439},
    {"nlsGetOption",
     [] {
       int32_t value = 0;
       int32_t size = sizeof value;
       nlsGetOption(nullptr, u"QZNLS.XPA_SESSION_CEI", 21, NLS_OPTION_INTEGER, &value, &size);
     },
     456},
    {"nlsOpenMessageBundle", [] { nlsOpenMessageBundle(nullptr, 0, nullptr, 0); }, 562},
};

class Stubs : public ::testing::Test {
 protected:
  Stubs() { storeHostRecords(records_.vector); }
  test::HostRecords records_;
};

TEST_F(Stubs, EachAssertionStubEndsTheProcessWithItsLine) {
  for (const Stub& stub : stubs) {
    const Ending ending = runInChild(stub.call);
    EXPECT_EQ(ending.signal, SIGSEGV) << stub.name;
    const std::string expected = "VELD- Assertion failed: hs/src/qznlsstub/" + std::to_string(stub.line) + "\n";
    EXPECT_NE(ending.output.find(expected), std::string::npos) << stub.name << ": " << ending.output;
  }
}

// Hosts that call by turns need no place anew each time.
TEST(Records, TheSameOnesAreStoredOnce) {
  test::HostRecords hosts[3];
  const VeldInputVector* places[3];
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(storeHostRecords(hosts[i].vector));
    places[i] = hostRecords();
    EXPECT_EQ(places[i]->memory, &hosts[i].memory);
  }
  EXPECT_NE(places[0], places[1]);
  EXPECT_NE(places[1], places[2]);
  for (const int i : {0, 2, 1, 0}) {
    ASSERT_TRUE(storeHostRecords(hosts[i].vector));
    EXPECT_EQ(hostRecords(), places[i]) << i;
  }
  hosts[1].threadBlock.words[0] = 1;
  ASSERT_TRUE(storeHostRecords(hosts[1].vector));
  EXPECT_NE(hostRecords(), places[1]);
  EXPECT_EQ(hostRecords()->threadBlock->words[0], 1u);
  EXPECT_EQ(places[1]->threadBlock->words[0], 0u);
}

TEST_F(Stubs, ConstantAnswers) {
  EXPECT_EQ(nlsListCreate(nullptr, nullptr, nullptr, "x"), NLS_MARKER_HANDLE);
  EXPECT_EQ(nlsLockCreate(nullptr, nullptr, nullptr, nullptr), NLS_MARKER_HANDLE);
  EXPECT_EQ(nlsTreeSetOption(nullptr, 5, 6), 0u);
  EXPECT_EQ(nlsListDestroy(NLS_MARKER_HANDLE), 0u);
  EXPECT_EQ(nlsListDestroy(nullptr), 0u);
  EXPECT_EQ(nlsLockDestroy(NLS_MARKER_HANDLE), 0u);
  EXPECT_EQ(nlsLockDestroy(nullptr), 0u);
}

// A host's handle, counted.
struct CountedHandle {
  NLS_HANDLE_FIELDS
};
int destroyed = 0;

class OwnServices : public ::testing::Test {
 protected:
  void SetUp() override {
    destroyed = 0;
    services_.size = sizeof services_;
    handle_.destroy = [](void*) -> NlsStatus {
      ++destroyed;
      return 77;
    };
  }
  void use() {
    records_.memory.services = &services_;
    ASSERT_TRUE(storeHostRecords(records_.vector));
  }
  void TearDown() override { storeHostRecords(plain_.vector); }

  test::HostRecords plain_;
  test::HostRecords records_;
  NlsHostServices services_{};
  static inline CountedHandle handle_{};
};

TEST_F(OwnServices, AreCalledInPlaceOfTheDefaults) {
  services_.listCreate = [](void*, const int32_t* params, void*, const char* name) -> void* {
    return params[3] == 0x20000000 && std::string(name) == "SM instances" ? &handle_ : nullptr;
  };
  services_.lockCreate = [](void*, const int32_t*, void*, const char*) -> void* { return nullptr; };
  services_.treeSetOption = [](void*, int32_t option, int32_t value) -> NlsStatus {
    return static_cast<NlsStatus>(option * 10 + value);
  };
  services_.lockAcquire = [](void* lock, int32_t exclusive, int32_t wait) -> NlsStatus {
    return lock == &handle_ ? static_cast<NlsStatus>(exclusive * 10 + wait) : 99;
  };
  services_.lockRelease = [](void*) -> NlsStatus { return 41; };
  services_.treeSearch = [](void*, void* zero1, void* zero2, const void* key, int32_t length) -> void* {
    return zero1 == nullptr && zero2 == nullptr && length == 12 ? const_cast<void*>(key) : nullptr;
  };
  services_.treeInsert = [](void*, void*, void*, void* value, int32_t zero3, const void*, int32_t length,
                            int32_t zero4) -> NlsStatus {
    return value == &handle_ && zero3 == 0 && zero4 == 0 ? static_cast<NlsStatus>(length) : 0;
  };
  services_.getOption = [](void*, const char16_t*, int32_t length, int32_t type, void* buffer,
                           int32_t* size) -> NlsStatus {
    *static_cast<int32_t*>(buffer) = length;
    *size = type;
    return 0;
  };
  services_.openMessageBundle = [](void*, int32_t code, void*, int32_t size) -> NlsStatus {
    return static_cast<NlsStatus>(code + size);
  };
  services_.hostCodePage = [] { return 932; };
  services_.hostLocaleId = [] { return uint32_t{1041}; };
  use();
  const int32_t params[6] = {1, 0, 1, 0x20000000, 0, 0};
  EXPECT_EQ(nlsListCreate(nullptr, params, nullptr, "SM instances"), &handle_);
  EXPECT_EQ(nlsLockCreate(nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(nlsTreeSetOption(nullptr, 3, 4), 34u);
  EXPECT_EQ(nlsLockAcquire(&handle_, 1, 1), 11u);
  EXPECT_EQ(nlsLockRelease(&handle_), 41u);
  const char16_t* key = u"t0a0en";
  EXPECT_EQ(nlsTreeSearch(nullptr, key, 12), key);
  EXPECT_EQ(nlsTreeInsert(nullptr, &handle_, key, 12), 12u);
  int32_t value = 0;
  int32_t size = 4;
  EXPECT_EQ(nlsGetOption(nullptr, u"ABC", 3, NLS_OPTION_INTEGER, &value, &size), 0u);
  EXPECT_EQ(value, 3);
  EXPECT_EQ(size, NLS_OPTION_INTEGER);
  EXPECT_EQ(nlsOpenMessageBundle(nullptr, 5, nullptr, 6), 11u);
  EXPECT_EQ(nlsHostCodePage(), 932);
  EXPECT_EQ(nlsHostLocaleId(), 1041u);
}

TEST_F(OwnServices, HandlesEndThroughTheirOwnDestroy) {
  use();
  EXPECT_EQ(nlsListDestroy(&handle_), 77u);
  EXPECT_EQ(nlsLockDestroy(&handle_), 77u);
  EXPECT_EQ(destroyed, 2);
}

TEST_F(OwnServices, MembersBehindTheNamedSizeKeepTheirDefaults) {
  services_.listCreate = [](void*, const int32_t*, void*, const char*) -> void* { return nullptr; };
  services_.lockCreate = services_.listCreate;
  services_.size = offsetof(NlsHostServices, lockCreate);
  use();
  EXPECT_EQ(nlsListCreate(nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(nlsLockCreate(nullptr, nullptr, nullptr, nullptr), NLS_MARKER_HANDLE);
  services_.size = 0;
  EXPECT_EQ(nlsListCreate(nullptr, nullptr, nullptr, nullptr), NLS_MARKER_HANDLE);
}

TEST_F(OwnServices, LoadFurtherExtensions) {
  static NlsExtension extension{};
  services_.loadExtension = [](void* host, const char16_t* name, int32_t length, void*) -> void* {
    return host == &extension && std::u16string_view(name, static_cast<size_t>(length)) == u"t0a0en" ? &extension
                                                                                                     : nullptr;
  };
  extension.release = [](void*) -> NlsStatus { return 12; };
  use();
  EXPECT_EQ(nlsLoadExtension(&extension, u"t0a0en", 6, nullptr), &extension);
  EXPECT_EQ(extension.destroy(&extension), 12u);
  EXPECT_EQ(nlsLoadExtension(&extension, u"t0a0de", 6, nullptr), nullptr);
  // Names that the library knows aren't asked of the host, built in or not.
  extension = {};
  EXPECT_EQ(nlsLoadExtension(&extension, u"LCEEN", 5, nullptr), nullptr);
}

class Loader : public ::testing::Test {
 protected:
  Loader() { storeHostRecords(records_.vector); }
  test::HostRecords records_;
};

TEST_F(Loader, KnowsItsNamesInAnyCase) {
  for (const char16_t* name : {u"qznlssb", u"QZNLSSB", u"qZnLsSb"}) {
    NlsExtension* extension = nlsLoadExtension(nullptr, name, 7, nullptr);
    ASSERT_NE(extension, nullptr);
    EXPECT_EQ(extension->destroy, &nlsExtensionDestroy);
    EXPECT_EQ(extension->destroy(extension), 0u);
  }
  NlsExtension* database = nlsLoadExtension(&records_, u"qznlsldb", 8, nullptr);
  ASSERT_NE(database, nullptr);
  EXPECT_EQ(database->host, &records_);
  EXPECT_EQ(database->destroy(database), 0u);
}

TEST_F(Loader, UnknownNamesYieldNull) {
  EXPECT_EQ(nlsLoadExtension(nullptr, u"qznlssb ", 8, nullptr), nullptr);
  EXPECT_EQ(nlsLoadExtension(nullptr, u"qznlssx", 7, nullptr), nullptr);
  EXPECT_EQ(nlsLoadExtension(nullptr, u"qznlss", 6, nullptr), nullptr);
  EXPECT_EQ(nlsLoadExtension(nullptr, u"", 0, nullptr), nullptr);
  EXPECT_EQ(nlsLoadExtension(nullptr, u"lceicu", 6, nullptr), nullptr);
}

TEST_F(Loader, KnowsFourteenNames) {
  std::vector<std::u16string> names;
  for (const ExtensionRow& row : extensionRows) {
    names.emplace_back(row.name, static_cast<size_t>(row.nameLength));
    EXPECT_EQ(row.name[row.nameLength], u'\0');
  }
  const std::vector<std::u16string> expected = {u"qznlsldb", u"qznlsgb", u"qznlsmb", u"qznlssb", u"lceda",
                                                u"lceen",    u"lcees",   u"lcefi",   u"lceit",   u"lceno",
                                                u"lcepl",    u"lcesv",   u"lcstb",   u"lcebin"};
  EXPECT_EQ(names, expected);
}

TEST_F(Loader, GivesBackEverythingWhenMemoryFails) {
  static int allowed = 0;
  records_.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return allowed-- > 0; };
  const uint32_t before = records_.memory.context->inUse;
  XmPool* const pools = records_.memory.context->pools;
  int failures = 0;
  NlsExtension* extension = nullptr;
  for (int n = 0; extension == nullptr; ++n) {
    ASSERT_LT(n, 20);
    allowed = n;
    const Ending ending = runInChild([this] {
      XmPool* const poolsThen = records_.memory.context->pools;
      if (nlsLoadExtension(nullptr, u"qznlssb", 7, &records_) != nullptr) _exit(3);
      _exit(records_.memory.context->pools == poolsThen ? 4 : 5);
    });
    if (ending.exitCode == 4) {
      ++failures;
      EXPECT_NE(ending.output.find("VELD- qzlStatusToJnl: Insufficient Memory\n"), std::string::npos);
      continue;
    }
    EXPECT_EQ(ending.exitCode, 3);
    allowed = n;
    extension = nlsLoadExtension(nullptr, u"qznlssb", 7, nullptr);
  }
  EXPECT_GT(failures, 0);
  records_.memory.allowAllocation = nullptr;
  extension->destroy(extension);
  EXPECT_EQ(records_.memory.context->pools, pools);
  EXPECT_EQ(records_.memory.context->inUse, before);
}

// The block of element 1 is the module's own once the export has returned: the host may reuse its memory.
TEST(HostRecords, TheThreadBlockIsCopied) {
  test::HostRecords records;
  XmPool* pool = xmcreate(&records.vector, 0, 1024, XM_LENGTH_HEADER);
  VeldThreadMemory threadMemory{pool};
  uint32_t key = 0;
  ASSERT_EQ(htTlsCreate(&key), 0);
  ASSERT_EQ(htTlsSet(key, &threadMemory), 0);
  records.threadBlock.threadKey = key;
  void* handle = nullptr;
  ASSERT_EQ(VELDNLSLIB(5, records.input(), &handle), 0u);
  std::memset(&records.threadBlock, 0xFF, sizeof records.threadBlock);
  ASSERT_EQ(pool->chunks, nullptr);
  EXPECT_NE(xmalloc(hostRecords(), XM_THREAD_POOL, 8, 0), nullptr);
  EXPECT_NE(pool->chunks, nullptr);
  static_cast<QZNLS*>(handle)->destroy(handle);
  xmdestroy(&records.vector, pool);
  htTlsDelete(key);
}

class Journal : public ::testing::Test {
 protected:
  Journal() { storeHostRecords(records_.vector); }
  test::HostRecords records_;
};

TEST_F(Journal, NamesThreeStatuses) {
  struct Case {
    NlsStatus status;
    const char* text;
  };
  const Case cases[] = {{nlsNoMemory, "qzlStatusToJnl: Insufficient Memory\n"},
                        {nlsBadOsCei, "qzlStatusToJnl: Bad OS CEI\n"},
                        {nlsUnknownEncoding, "qzlStatusToJnl: Unknown Encoding\n"},
                        {nlsModuleUnavailable, "qzlStatusToJnl: Unknown Status code (-2143295478)\n"},
                        {0, "qzlStatusToJnl: Unknown Status code (0)\n"}};
  for (const Case& c : cases) {
    const Ending ending = runInChild([&c] { _exit(qzlStatusToJnl(nullptr, journalError, c.status) == 0 ? 0 : 1); });
    EXPECT_EQ(ending.exitCode, 0);
    EXPECT_TRUE(ending.output.ends_with(std::string("VELD- ") + c.text)) << ending.output;
  }
}

TEST_F(Journal, AMessagesTextNeverReachesTheOutput) {
  const Ending ending = runInChild([] { QzlMessageToJnl(nullptr, journalError, u"%s failed", 0, u"secret"); });
  EXPECT_TRUE(ending.output.ends_with("VELD- QzlMessageToJnl: \n")) << ending.output;
  EXPECT_EQ(ending.output.find("secret"), std::string::npos);
}

TEST(Pools, OnlyTheTopBitOfFlagsAsksForZeros) {
  test::HostRecords records;
  ASSERT_TRUE(storeHostRecords(records.vector));
  const int32_t plain[3] = {0x7FFFFFFF, -1, -1};
  XmPool* pool = nlsPoolCreate(nullptr, plain, nullptr, "x");
  ASSERT_NE(pool, nullptr);
  EXPECT_EQ(pool->flags & XM_ZERO, 0u);
  EXPECT_EQ(pool->initialSize, 0x2000u);
  EXPECT_EQ(pool->extensionSize, 0x2000u);
  auto* block = static_cast<uint8_t*>(nlsPoolAlloc(pool, 64, 0));
  for (int i = 0; i < 64; ++i) block[i] = 0xAA;
  nlsPoolFree(pool, block);
  auto* again = static_cast<uint8_t*>(nlsPoolAlloc(pool, 64, zeroFill));
  EXPECT_EQ(again, block);
  for (int i = 0; i < 64; ++i) EXPECT_EQ(again[i], 0) << i;
  EXPECT_EQ(reinterpret_cast<uintptr_t>(nlsPoolAlloc(pool, 0, 0)), 1u);
  EXPECT_EQ(nlsPoolFree(pool, reinterpret_cast<void*>(1)), 0u);
  EXPECT_EQ(nlsPoolFree(pool, nullptr), 0u);
  EXPECT_EQ(nlsPoolDestroy(pool), 0u);
  const int32_t zeroed[3] = {INT32_MIN, 0, 0};
  pool = nlsPoolCreate(nullptr, zeroed, nullptr, nullptr);
  EXPECT_EQ(pool->flags & XM_ZERO, XM_ZERO);
  EXPECT_EQ(nlsPoolDestroy(pool), 0u);
}

}  // namespace
}  // namespace veldnls
