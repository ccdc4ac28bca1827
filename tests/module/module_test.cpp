// The built module as a host sees it: one symbol, one call, and the object that comes back.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/death.h"
#include "support/guard.h"
#include "support/host.h"
#include "support/sanitizers.h"
#include "veldnls/cei.h"
#include "veldnls/hostlib/xm.h"
#include "veldnls/status.h"

namespace {

const std::string modulePath = VELDNLS_BINARY_DIR "/veldnls.so";

class Module {
 public:
  Module() : library_(dlopen(modulePath.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (library_ != nullptr) entry = reinterpret_cast<NlsLibraryEntry>(dlsym(library_, "VELDNLSLIB"));
  }
  ~Module() {
    if (library_ != nullptr) dlclose(library_);
  }
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  NlsLibraryEntry entry = nullptr;

 private:
  void* library_;
};

std::string commandOutput(const std::string& command) {
  std::string text;
  FILE* pipe = popen(command.c_str(), "r");
  char buffer[512];
  while (pipe != nullptr && std::fgets(buffer, sizeof buffer, pipe) != nullptr) text += buffer;
  if (pipe != nullptr) pclose(pipe);
  return text;
}

std::u16string hostLocale(QZNLS* nls) {
  char16_t name[60];
  int32_t length = 0;
  nls->getHostLocaleName(nls, name, &length);
  return {name, static_cast<size_t>(length)};
}

std::string toUtf8(QZNLS* nls, CEI source, std::string_view text) {
  TranscodingPipeline* pipeline = nls->createPipeline(nls, source, U_UTF8_CE, nullptr, nullptr);
  if (pipeline == nullptr) return "no pipeline";
  std::string output(text.size() * 4, '\0');
  uint32_t length = 0;
  pipeline->transcode(pipeline, text.data(), static_cast<uint32_t>(text.size()), output.data(),
                      static_cast<uint32_t>(output.size()), &length, nullptr);
  pipeline->destroy(pipeline);
  output.resize(length);
  return output;
}

TEST(Module, ExportsOneSymbol) {
  const std::string symbols = commandOutput("nm -D --defined-only " + modulePath + " | awk '{print $3}'");
  EXPECT_EQ(symbols, "VELDNLSLIB\n");
}

TEST(Module, CarriesItsVersionedName) {
  EXPECT_NE(commandOutput("readelf -d " + modulePath).find("soname: [veldnls.so.1]"), std::string::npos);
}

TEST(Module, NeedsOnlyTheStandardLibraries) {
  const std::string needed = commandOutput("readelf -d " + modulePath + " | sed -n 's/.*Shared library: .//p'");
  for (size_t start = 0; start < needed.size();) {
    const size_t end = needed.find('\n', start);
    const std::string library = needed.substr(start, end - start);
    const bool known = library.starts_with("libstdc++.so") || library.starts_with("libgcc_s.so") ||
                       library.starts_with("libc.so") || library.starts_with("libm.so") ||
                       library.starts_with("ld-linux") || library.starts_with("libasan") ||
                       library.starts_with("libubsan") || library.starts_with("libtsan");
    EXPECT_TRUE(known) << library;
    start = end + 1;
  }
}

TEST(Module, FewerThanFiveElementsFailWithoutALookAtTheVector) {
  for (const int32_t count : {4, 1, 0, -1, INT32_MIN}) {
    const test::Ending ending = test::runInChild([count] {
      const Module module;
      void* handle = &handle;
      void* const before = handle;
      const uint32_t status = module.entry(count, nullptr, &handle);
      _exit(status == nlsInitFailed && handle == before ? 7 : 8);
    });
    EXPECT_EQ(ending.exitCode, 7);
    EXPECT_NE(ending.output.find("VELD- NLSASSERT failed: hs/src/hsnlsmain line=72\n"), std::string::npos)
        << ending.output;
  }
}

TEST(Module, ElementsPastTheFifthAreIgnored) {
  const Module module;
  test::HostRecords records;
  void* vector[7] = {&records.memory,           &records.threadBlock, nullptr,
                     &records.threads,          &records.files,       reinterpret_cast<void*>(1),
                     reinterpret_cast<void*>(1)};
  void* handle = nullptr;
  ASSERT_EQ(module.entry(7, vector, &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  EXPECT_EQ(nls->destroy(nls), 0u);
}

TEST(Module, TheVectorMayEndAtAPage) {
  const Module module;
  test::HostRecords records;
  test::GuardedBuffer buffer(5 * sizeof(void*));
  std::memcpy(buffer.data(), &records.vector, sizeof records.vector);
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, reinterpret_cast<void**>(buffer.data()), &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  EXPECT_EQ(nls->destroy(nls), 0u);
}

TEST(Module, AllElementsMayBeNull) {
  const Module module;
  void* vector[5] = {};
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, vector, &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  EXPECT_EQ(toUtf8(nls, U_WLATIN1_CE, "\x80"), "\xE2\x82\xAC");
  void* second = nullptr;
  ASSERT_EQ(module.entry(5, vector, &second), 0u);
  EXPECT_EQ(nls->destroy(nls), 0u);
  auto* other = static_cast<QZNLS*>(second);
  EXPECT_EQ(toUtf8(other, U_EBCDIC1047_CE, "\xC1"), "A");
  EXPECT_EQ(other->destroy(other), 0u);
}

TEST(Module, AContextOfTheModulesOwnStaysOutOfTheHostsRecord) {
  const Module module;
  VeldMemoryRecord memory{};
  void* vector[5] = {&memory, nullptr, nullptr, nullptr, nullptr};
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, vector, &handle), 0u);
  EXPECT_EQ(memory.context, nullptr);
  auto* nls = static_cast<QZNLS*>(handle);
  EXPECT_EQ(nls->destroy(nls), 0u);
}

size_t mappedPages() {
  std::ifstream statm("/proc/self/statm");
  size_t pages = 0;
  statm >> pages;
  return pages;
}

TEST(Module, AContextOfTheModulesOwnEndsWithTheModule) {
  void* vector[5] = {};
  const auto round = [&vector] {
    const Module module;
    void* handle = nullptr;
    if (module.entry(5, vector, &handle) != 0) std::abort();
    auto* nls = static_cast<QZNLS*>(handle);
    // What the caller forgets to destroy goes with the object.
    if (nls->createPipeline(nls, U_WLATIN1_CE, U_UTF8_CE, nullptr, nullptr) == nullptr) std::abort();
    nls->destroy(nls);
  };
  round();
  const size_t before = mappedPages();
  constexpr size_t rounds = 50;
  for (size_t i = 0; i < rounds; ++i) round();
  // A context reserves tens of MiB; what a sanitizer notes down grows by one or two in each round.
  constexpr size_t halfAContext = (32u << 20) / 4096;
  EXPECT_LE(mappedPages(), before + rounds * halfAContext / 10);
}

// Converts over and over, in memory of the module's own context, until the process is gone.
void convertForever(QZNLS* nls, std::atomic<int>& converting) {
  ++converting;
  TranscodingPipeline* widen = &nls->prebuiltPipelines[NLS_PREBUILT_WLATIN1_TO_UTF16];
  for (;;) {
    char16_t output[64];
    uint32_t length = 0;
    widen->transcode(widen, "hello world", 11, output, sizeof output, &length, nullptr);
    TranscodingPipeline* pipeline = nls->createPipeline(nls, U_WLATIN1_CE, U_UTF8_CE, nullptr, nullptr);
    if (pipeline != nullptr) pipeline->destroy(pipeline);
  }
}

// A server's main function may return while its threads are at work.
TEST(Module, TheProcessMayExitWhileThreadsConvert) {
  constexpr int threads = 4;
  // The thread sanitizer waits a second at each exit.
  constexpr int rounds = test::threadSanitizer ? 3 : 30;
  for (int round = 0; round < rounds; ++round) {
    const test::Ending ending = test::runInChild([] {
      static std::atomic<int> converting{0};
      static const Module& module = *new Module;
      void* vector[5] = {};
      void* handle = nullptr;
      if (module.entry(5, vector, &handle) != 0) std::abort();
      for (int i = 0; i < threads; ++i) {
        std::thread(convertForever, static_cast<QZNLS*>(handle), std::ref(converting)).detach();
      }
      while (converting < threads) std::this_thread::yield();
      std::exit(EXIT_SUCCESS);
    });
    ASSERT_EQ(ending.signal, 0) << round;
    ASSERT_EQ(ending.exitCode, 0) << round << ending.errors;
  }
}

TEST(Module, WithoutMemoryForItsOwnContextTheExportFails) {
  if (test::addressSanitizer || test::threadSanitizer) {
    GTEST_SKIP() << "the sanitizer needs the address space that this test takes away";
  }
  const test::Ending ending = test::runInChild([] {
    const Module module;
    const rlimit none{1 << 20, 1 << 20};
    setrlimit(RLIMIT_AS, &none);
    void* vector[5] = {};
    void* handle = &handle;
    void* const before = handle;
    const uint32_t status = module.entry(5, vector, &handle);
    _exit(status == nlsInitFailed && handle == before ? 7 : 8);
  });
  EXPECT_EQ(ending.exitCode, 7);
  EXPECT_TRUE(ending.output.ends_with("VELD- NLSASSERT failed: hs/src/hsnlsmain line=103\n")) << ending.output;
}

TEST(Module, TwoLiveObjects) {
  const Module module;
  test::NlsHost first(module.entry);
  test::NlsHost second(module.entry);
  ASSERT_NE(first.nls, nullptr);
  ASSERT_NE(second.nls, nullptr);
  EXPECT_NE(first.nls, second.nls);
  EXPECT_NE(first.nls->singleByteModule, second.nls->singleByteModule);
  EXPECT_EQ(toUtf8(first.nls, U_PCOEM850_CE, "\x84"), "\xC3\xA4");
  EXPECT_EQ(toUtf8(second.nls, U_PCOEM850_CE, "\x84"), "\xC3\xA4");
}

TEST(Module, AnOlderObjectOutlivesALaterCallWithOtherRecords) {
  const Module module;
  test::HostRecords first;
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, first.input(), &handle), 0u);
  auto* older = static_cast<QZNLS*>(handle);
  const uint32_t before = first.memory.context->inUse;
  {
    test::NlsHost later(module.entry);
    ASSERT_NE(later.nls, nullptr);
    EXPECT_EQ(toUtf8(older, U_WLATIN1_CE, "\xE4"), "\xC3\xA4");
    // The later host's records serve the older object too, the older one's no more.
    first.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
    EXPECT_EQ(toUtf8(older, U_WLATIN1_CE, "\xE4"), "\xC3\xA4");
    later.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
    EXPECT_EQ(toUtf8(older, U_WLATIN1_CE, "\xE4"), "no pipeline");
    later.memory.allowAllocation = nullptr;
    EXPECT_EQ(first.memory.context->inUse, before);
    EXPECT_EQ(older->destroy(older), 0u);
    EXPECT_LT(first.memory.context->inUse, before);
  }
}

TEST(Module, DestroyGivesBackAllPools) {
  const Module module;
  test::HostRecords records;
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, records.input(), &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  nls->destroy(nls);
  const uint32_t once = records.memory.context->inUse;
  XmPool* const pools = records.memory.context->pools;
  for (int round = 0; round < 100; ++round) {
    ASSERT_EQ(module.entry(5, records.input(), &handle), 0u);
    nls = static_cast<QZNLS*>(handle);
    // What the caller forgets to destroy goes with the object.
    ASSERT_NE(nls->createPipeline(nls, U_WLATIN1_CE, U_UTF8_CE, nullptr, nullptr), nullptr);
    nls->destroy(nls);
  }
  EXPECT_EQ(records.memory.context->inUse, once);
  EXPECT_EQ(records.memory.context->pools, pools);
}

TEST(Module, ReleaseOfNullAndVersionQueries) {
  const Module module;
  const test::NlsHost host(module.entry);
  ASSERT_NE(host.nls, nullptr);
  EXPECT_EQ(host.nls->release(nullptr), 0u);
  int32_t major = 0;
  int32_t minor = 0;
  int32_t patch = 0;
  EXPECT_EQ(host.nls->versionQuery(nullptr, &major, &minor, &patch), 0u);
  EXPECT_EQ(std::vector({major, minor, patch}), std::vector({3, 1, 1}));
  EXPECT_EQ(host.nls->minimumVersionQuery(nullptr, &major, &minor, &patch), 0u);
  EXPECT_EQ(std::vector({major, minor, patch}), std::vector({3, 0, 0}));
  EXPECT_EQ(host.nls->versionQuery(host.nls, nullptr, &minor, nullptr), 0u);
  EXPECT_EQ(minor, 1);
  for (const CodePageModule* module_ : {reinterpret_cast<CodePageModule*>(host.nls->singleByteModule),
                                        reinterpret_cast<CodePageModule*>(host.nls->localeDatabase)}) {
    EXPECT_EQ(std::memcmp(module_->magic, "nevo", 4), 0);
    EXPECT_EQ(module_->minimumVersionQuery(module_, &major, &minor, &patch), 0u);
    EXPECT_EQ(std::vector({major, minor, patch}), std::vector({3, 0, 0}));
    EXPECT_EQ(module_->host, nullptr);
    EXPECT_NE(module_->destroy, nullptr);
  }
}

TEST(Module, DataOfAFreshObject) {
  const Module module;
  const test::NlsHost host(module.entry);
  ASSERT_NE(host.nls, nullptr);
  EXPECT_EQ(host.nls->sessionCei, 62);
  EXPECT_EQ(host.nls->osCei, 25);
  EXPECT_EQ(host.nls->multiByteModule, nullptr);
  EXPECT_NE(host.nls->singleByteModule, nullptr);
  EXPECT_EQ(host.nls->pipelineInstances, NLS_MARKER_HANDLE);
  EXPECT_EQ(host.nls->localeInstances, NLS_MARKER_HANDLE);
  EXPECT_EQ(host.nls->smInstances, NLS_MARKER_HANDLE);
  EXPECT_EQ(host.nls->userCharacterTables, nullptr);
  EXPECT_EQ(host.nls->shuttingDown, 0);
  const CEI routes[8][2] = {{25, 27}, {27, 25}, {25, 20}, {20, 25}, {25, 161}, {161, 25}, {62, 25}, {25, 62}};
  for (int i = 0; i < 8; ++i) {
    const TranscodingPipeline& pipeline = host.nls->prebuiltPipelines[i];
    EXPECT_EQ(pipeline.sourceCei, routes[i][0]) << i;
    EXPECT_EQ(pipeline.targetCei, routes[i][1]) << i;
    EXPECT_STREQ(pipeline.name, "Transcoding pipeline");
    EXPECT_EQ(std::memcmp(pipeline.magic, "nevo", 4), 0);
  }
}

// What the environment says reaches the object through the module's own discovery.
TEST(Module, HostEncodingAndLocaleFollowTheEnvironment) {
  struct Case {
    const char* value;
    CEI cei;
    const char16_t* locale;
  };
  for (const Case& c : {Case{"de_DE.ISO-8859-15", 40, u"de_DE"}, Case{"ja_JP.UTF-8", 20, u"ja_JP"},
                        Case{"C", 62, u"en_US"}, Case{"de_XX.CP1250", 60, u"de_DE"}}) {
    setenv("LC_ALL", c.value, 1);
    const Module module;
    const test::NlsHost host(module.entry);
    unsetenv("LC_ALL");
    ASSERT_NE(host.nls, nullptr);
    CEI cei = 0;
    EXPECT_EQ(host.nls->getHostEncoding(host.nls, &cei), 0u);
    EXPECT_EQ(cei, c.cei) << c.value;
    EXPECT_EQ(hostLocale(host.nls), c.locale) << c.value;
  }
}

TEST(Module, HostServicesGiveTheNumbers) {
  NlsHostServices services{};
  services.size = sizeof services;
  services.hostCodePage = [] { return 65001; };
  services.hostLocaleId = [] { return uint32_t{0x7777}; };
  const Module module;
  test::HostRecords records;
  records.memory.services = &services;
  void* handle = nullptr;
  ASSERT_EQ(module.entry(5, records.input(), &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  CEI cei = 0;
  EXPECT_EQ(nls->getHostEncoding(nls, &cei), nlsUnknownEncoding);
  EXPECT_EQ(cei, 62);
  char16_t name[60];
  int32_t length = 0;
  EXPECT_EQ(nls->getHostLocaleName(nls, name, &length), nlsLocaleNotFound);
  EXPECT_EQ(std::u16string_view(name, static_cast<size_t>(length)), u"en_US");
  EXPECT_EQ(nls->getHostLocaleName(nls, nullptr, &length), nlsNullString);
  nls->destroy(nls);
  // A service behind the size that the host names isn't looked at.
  services.size = offsetof(NlsHostServices, hostCodePage);
  setenv("LC_ALL", "C", 1);
  ASSERT_EQ(module.entry(5, records.input(), &handle), 0u);
  unsetenv("LC_ALL");
  nls = static_cast<QZNLS*>(handle);
  EXPECT_EQ(nls->getHostEncoding(nls, &cei), 0u);
  nls->destroy(nls);
}

// Host and module hold a copy each of the pool code and share the pool: a lock taken by the one is re-entered by the
// other in the same thread, and keeps other threads out.
TEST(Module, APoolLockIsReenteredAcrossTheCopies) {
  const Module module;
  test::NlsHost host(module.entry);
  ASSERT_NE(host.nls, nullptr);
  XmPool* pool = host.nls->pool;
  xmpoollock(pool);
  ASSERT_EQ(pool->lockDepth, 1);
  TranscodingPipeline* pipeline = host.nls->createPipeline(host.nls, 62, 20, nullptr, nullptr);
  EXPECT_NE(pipeline, nullptr);
  EXPECT_EQ(pool->lockDepth, 1);
  EXPECT_EQ(host.nls->destroyPipeline(pipeline), 0u);
  std::atomic<bool> done{false};
  std::thread other([&] {
    TranscodingPipeline* late = host.nls->createPipeline(host.nls, 62, 20, nullptr, nullptr);
    done = true;
    host.nls->destroyPipeline(late);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(done);
  xmpoolunlock(pool);
  other.join();
  EXPECT_TRUE(done);
  EXPECT_EQ(pool->owner, 0u);
}

// Calls of the export in the midst of another object's work: old records stay readable. (For the thread sanitizer.)
TEST(Module, FurtherCallsOfTheExportDisturbNoRunningObject) {
  const Module module;
  test::NlsHost host(module.entry);
  ASSERT_NE(host.nls, nullptr);
  std::atomic<bool> done{false};
  std::thread worker([&] {
    while (!done) {
      TranscodingPipeline* pipeline = host.nls->createPipeline(host.nls, 62, 20, nullptr, nullptr);
      host.nls->destroyPipeline(pipeline);
    }
  });
  std::vector<std::unique_ptr<VeldFileRecord>> files;
  for (int i = 0; i < 50; ++i) {
    files.push_back(std::make_unique<VeldFileRecord>());
    host.vector.files = files.back().get();
    void* handle = nullptr;
    ASSERT_EQ(module.entry(5, host.input(), &handle), 0u);
    static_cast<QZNLS*>(handle)->destroy(handle);
  }
  done = true;
  worker.join();
}

TEST(Module, MakesLocales) {
  const Module module;
  const test::NlsHost host(module.entry);
  ASSERT_NE(host.nls, nullptr);
  QZLocale* locale = host.nls->createLocale(host.nls, u"en_US", 5);
  ASSERT_NE(locale, nullptr);
  char16_t text[20];
  int32_t length = 0;
  EXPECT_EQ(locale->formatDateTime(locale, 0, 0, text, 20, &length), 0u);
  EXPECT_EQ(std::u16string(text, static_cast<size_t>(length)), u"01Jan1960:00:00:00");
  EXPECT_EQ(locale->destroy(locale), 0u);
}

TEST(Module, SlotsOfWhatIsNotBuiltInRefuse) {
  const Module module;
  const test::NlsHost host(module.entry);
  QZNLS* nls = host.nls;
  ASSERT_NE(nls, nullptr);
  EXPECT_EQ(nls->createDefaultLocale(nls), nullptr);
  EXPECT_EQ(nls->freeLocaleWorkRecord(nls, nullptr), 0u);
  auto* collator = reinterpret_cast<QZNLSCollate*>(1);
  NlsStatus status = 0;
  EXPECT_EQ(nls->createCollator(nls, nullptr, nullptr, &collator, nullptr, &status), nlsCollatorLocaleInvalid);
  EXPECT_EQ(collator, nullptr);
  EXPECT_EQ(status, nlsCollatorLocaleInvalid);
  collator = reinterpret_cast<QZNLSCollate*>(1);
  EXPECT_EQ(nls->createCollatorFromHeader(nls, nullptr, nullptr, &collator, nullptr), nlsCollatorLocaleInvalid);
  EXPECT_EQ(collator, nullptr);
  EXPECT_EQ(nls->makeKeyHeader(nls, nullptr, nullptr), nlsCollatorLocaleInvalid);
  EXPECT_EQ(nls->compareKeyHeaders(nullptr, nullptr, nullptr), nlsCollationKeyCorrupt);
  EXPECT_EQ(nls->readKeyHeader(nls, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            nlsCollationKeyCorrupt);
  auto* manipulator = reinterpret_cast<QZNLSSM*>(1);
  EXPECT_EQ(nls->createStringManipulator(nls, 62, nullptr, &manipulator), nlsUnknownEncoding);
  EXPECT_EQ(manipulator, nullptr);
}

TEST(Module, ValidatesTextAndTakesUserCharacters) {
  const Module module;
  const test::NlsHost host(module.entry);
  QZNLS* nls = host.nls;
  ASSERT_NE(nls, nullptr);
  int32_t offset = 5;
  EXPECT_EQ(nls->validateEncodedText(nls, "a", 1, 20, nullptr, &offset), 0u);
  EXPECT_EQ(offset, -1);
  EXPECT_EQ(nls->validateEncodedText(nls, "a\xFF", 2, 138, nullptr, &offset), nlsInvalidCharacter);
  EXPECT_EQ(offset, 1);
  uint8_t codes[] = {0x85, 0x40};
  uint8_t characters[] = {0xF8, 0xA0};
  UserCharacterTable tables[2]{};
  for (int i = 0; i < 2; ++i) {
    tables[i].columnCount = 2;
    tables[i].characterCount = 1;
    tables[i].columnBytes = 2;
    tables[i].columns[i] = codes;
    tables[i].columns[1 - i] = characters;
    tables[i].ceis[i] = 138;
    tables[i].ceis[1 - i] = 25;
  }
  tables[0].next = &tables[1];
  UserCharacterTable* list = nls->setUserCharacterTables(nls, tables);
  ASSERT_NE(list, nullptr);
  TranscodingPipeline* pipeline = nls->createToUtf16Pipeline(nls, 138, nullptr, nullptr);
  ASSERT_NE(pipeline, nullptr);
  uint8_t output[4];
  uint32_t length = 0;
  EXPECT_EQ(pipeline->transcode(pipeline, codes, 2, output, 4, &length, nullptr), 0u);
  EXPECT_EQ(length, 2u);
  EXPECT_EQ(output[0] | output[1] << 8, 0xF8A0);
  EXPECT_EQ(pipeline->destroy(pipeline), 0u);
  nls->userCharacterTables = nullptr;
  EXPECT_EQ(nls->freeUserCharacterTables(nls, list), 0u);
}

}  // namespace
