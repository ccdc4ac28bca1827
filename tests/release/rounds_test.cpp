// A host that loads the module, uses it and unloads it, over and over: the process stays as it was.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "support/host.h"
#include "veldnls/cei.h"

namespace {

constexpr int rounds = 1000;
constexpr int warmUp = 10;  // rounds and measurements in which the C library's own memory settles
constexpr const char* modulePath = VELDNLS_BINARY_DIR "/veldnls.so";

struct Footprint {
  size_t mappings = 0;
  size_t mappedBytes = 0;
  size_t openFiles = 0;
  size_t threads = 0;
  bool operator==(const Footprint&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Footprint& footprint) {
  return out << footprint.mappings << " mappings of " << footprint.mappedBytes << " bytes, " << footprint.openFiles
             << " open files, " << footprint.threads << " threads";
}

size_t entriesOf(const char* folder) {
  size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
  return count;
}

Footprint footprint() {
  Footprint now{.openFiles = entriesOf("/proc/self/fd"), .threads = entriesOf("/proc/self/task")};
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line); ++now.mappings) {
    const size_t dash = line.find('-');
    now.mappedBytes += std::stoull(line.substr(dash + 1), nullptr, 16) - std::stoull(line, nullptr, 16);
  }
  return now;
}

bool converts(QZNLS& nls) {
  constexpr std::string_view text = "\xC7\x99\xA4\x59";  // in EBCDIC 1047
  constexpr std::string_view wanted = "Gru\xC3\x9F";
  TranscodingPipeline* pipeline = nls.createPipeline(&nls, U_EBCDIC1047_CE, U_UTF8_CE, nullptr, nullptr);
  if (pipeline == nullptr) return false;
  char output[32];
  uint32_t length = 0;
  const NlsStatus status = pipeline->transcode(pipeline, text.data(), static_cast<uint32_t>(text.size()), output,
                                               sizeof output, &length, nullptr);
  pipeline->destroy(pipeline);
  return status == 0 && std::string_view(output, length) == wanted;
}

// Loads the module, has `use` use its export, and unloads it for good.
template <typename Use>
void loadUseUnload(Use use) {
  void* library = dlopen(modulePath, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto entry = reinterpret_cast<NlsLibraryEntry>(dlsym(library, "VELDNLSLIB"));
  ASSERT_NE(entry, nullptr);
  use(entry);
  ASSERT_EQ(dlclose(library), 0);
  ASSERT_EQ(dlopen(modulePath, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the module stayed loaded";
}

template <typename Use>
void expectNoGrowth(Use use) {
  Footprint before;
  for (int i = 0; i < warmUp; ++i) {
    loadUseUnload(use);
    before = footprint();
  }
  for (int i = 0; i < rounds && !testing::Test::HasFatalFailure(); ++i) loadUseUnload(use);
  EXPECT_EQ(footprint(), before);
}

TEST(ReleaseRounds, AHostWithRecordsOfItsOwn) {
  expectNoGrowth([](NlsLibraryEntry entry) {
    const test::NlsHost host(entry);
    ASSERT_NE(host.nls, nullptr);
    ASSERT_TRUE(converts(*host.nls));
  });
}

TEST(ReleaseRounds, AHostWithoutRecords) {
  expectNoGrowth([](NlsLibraryEntry entry) {
    void* vector[5] = {};
    void* object = nullptr;
    ASSERT_EQ(entry(5, vector, &object), 0u);
    auto* nls = static_cast<QZNLS*>(object);
    ASSERT_TRUE(converts(*nls));
    ASSERT_EQ(nls->destroy(nls), 0u);
  });
}

// The module's own memory goes with it, whatever the host left undone.
TEST(ReleaseRounds, AHostThatForgetsTheObject) {
  expectNoGrowth([](NlsLibraryEntry entry) {
    void* vector[5] = {};
    void* object = nullptr;
    ASSERT_EQ(entry(5, vector, &object), 0u);
    ASSERT_TRUE(converts(*static_cast<QZNLS*>(object)));
  });
}

}  // namespace
