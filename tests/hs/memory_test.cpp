// High and executable memory.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"
#include "support/death.h"

// So many mutexes more does the system make; -1: any number. And how many there are. The program is linked so that
// calls of pthread_mutex_init and pthread_mutex_destroy come here.
static std::atomic<int> mutexesToMake = -1;
static std::atomic<int> mutexesAlive = 0;

extern "C" {
int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
// Seen by shared libraries too, whose calls the linker sends here with some sanitizers.
[[gnu::visibility("default")]] int __wrap_pthread_mutex_init(pthread_mutex_t* mutex,
                                                             const pthread_mutexattr_t* attributes) {
  if (mutexesToMake == 0) return EAGAIN;
  if (mutexesToMake > 0) --mutexesToMake;
  ++mutexesAlive;
  return __real_pthread_mutex_init(mutex, attributes);
}
int __real_pthread_mutex_destroy(pthread_mutex_t* mutex);
[[gnu::visibility("default")]] int __wrap_pthread_mutex_destroy(pthread_mutex_t* mutex) {
  --mutexesAlive;
  return __real_pthread_mutex_destroy(mutex);
}
}

namespace {

constexpr uint32_t page = 4096;

int32_t optionValue = 0;
int optionReads = 0;
std::string optionName;

int32_t readOption(const char* name, int32_t* value) {
  ++optionReads;
  optionName = name;
  *value = optionValue;
  return 0;
}

int32_t readNoOption(const char* /*name*/, int32_t* value) {
  *value = 0;
  return 1;
}

// One of "rwxp" for the mapping that holds an address.
std::string protectionOf(const void* address) {
  const auto wanted = reinterpret_cast<unsigned long>(address);
  std::FILE* file = std::fopen("/proc/self/maps", "r");
  char line[512];
  std::string found;
  while (std::fgets(line, sizeof line, file) != nullptr) {
    unsigned long start = 0;
    unsigned long end = 0;
    char protection[5];
    if (std::sscanf(line, "%lx-%lx %4s", &start, &end, protection) == 3 && start <= wanted && wanted < end) {
      found = protection;
    }
  }
  std::fclose(file);
  return found;
}

std::string hex(const void* address) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%lx", reinterpret_cast<unsigned long>(address));
  return text;
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class Memory : public testing::Test {
 protected:
  void setOption(int32_t value) {
    optionValue = value;
    optionReads = 0;
    host.memory.readOption = readOption;
  }

  test::HostRecords host;
  XmContext* context = host.memory.context;
};

TEST_F(Memory, WithoutOptionTablePagesServe) {
  const uint32_t inUse = context->inUse;
  auto* memory = static_cast<uint8_t*>(hshimalloc(&host.vector, 5000));
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(context->highMemoryState, 1);
  EXPECT_EQ(context->inUse, inUse);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(memory) % page, 0u);
  memory[4999] = 1;
  hshifree(&host.vector, memory, 5000);
  EXPECT_EQ(protectionOf(memory), "");
}

TEST_F(Memory, AnUnsetOptionMeansPages) {
  host.memory.readOption = readNoOption;
  hshifree(&host.vector, hshimalloc(&host.vector, page), page);
  EXPECT_EQ(context->highMemoryState, 1);
}

TEST_F(Memory, ZeroAndNegativeOptionsMeanPlainMemory) {
  for (const int32_t value : {0, -1, INT32_MIN}) {
    test::HostRecords own;
    optionValue = value;
    own.memory.readOption = readOption;
    const uint32_t inUse = own.memory.context->inUse;
    void* memory = hshimalloc(&own.vector, 5000);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(own.memory.context->highMemoryState, 0);
    EXPECT_EQ(own.memory.context->inUse, inUse + 5000);
    hshifree(&own.vector, memory, 5000);
    EXPECT_EQ(own.memory.context->inUse, inUse);
  }
}

TEST_F(Memory, TheOptionIsReadOnce) {
  setOption(1);
  for (int i = 0; i < 3; ++i) hshifree(&host.vector, hshimalloc(&host.vector, page), page);
  EXPECT_EQ(optionReads, 1);
  EXPECT_EQ(optionName, "HIMEMENABLE");
}

TEST_F(Memory, StateTwoTracesEachCall) {
  setOption(2);
  const test::Ending ending = test::runInChild([&] {
    void* memory = hshimalloc(&host.vector, 5000);
    hshifree(&host.vector, memory, 5000);
    std::printf("at %s\n", hex(memory).c_str());
    host.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
    if (hshimalloc(&host.vector, 6000) != nullptr) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  const std::string at = ending.output.substr(ending.output.find("\nat ") + 4);
  const std::string address = at.substr(0, at.find('\n'));
  EXPECT_TRUE(holds(ending.output, " VELD- hshimalloc: maddr=" + address + " msize=5000\n")) << ending.output;
  EXPECT_TRUE(holds(ending.output, " VELD- hshifree: maddr=" + address + " msize=5000\n")) << ending.output;
  EXPECT_TRUE(holds(ending.output, "hshimalloc: allocation failed: msize=6000 error=12\n")) << ending.output;
}

TEST_F(Memory, OtherStatesAreSilent) {
  for (const int32_t value : {0, 1, 3}) {
    const test::Ending ending = test::runInChild([&] {
      setOption(value);
      hshifree(&host.vector, hshimalloc(&host.vector, page), page);
      host.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
      hshimalloc(&host.vector, page);
    });
    EXPECT_EQ(ending.signal, 0);
    EXPECT_EQ(ending.output, "");
  }
}

TEST_F(Memory, WhatIsNoPageEndsTheProcess) {
  setOption(1);
  void* memory = hshimalloc(&host.vector, page);
  auto* inside = static_cast<uint8_t*>(memory) + 1;
  const test::Ending ending = test::runInChild([&] { hshifree(&host.vector, inside, page); });
  EXPECT_EQ(ending.exitCode, 1);
  EXPECT_TRUE(holds(ending.output, "hshifree: MEM_DECOMMIT error: maddr=" + hex(inside) + " msize=4096 error=22\n"))
      << ending.output;
  const test::Ending code = test::runInChild([&] { hscgfree(&host.vector, inside, page); });
  EXPECT_EQ(code.exitCode, 1);
  EXPECT_TRUE(holds(code.output, "hscgfree: MEM_DECOMMIT error: addr=" + hex(inside) + " size=4096 error=22\n"))
      << code.output;
  hshifree(&host.vector, memory, page);
}

// Uses up the mappings that a process may have: no mapping can then be cut in two. False if there are too many.
bool useUpMappings() {
  constexpr size_t attempts = 200'000;
  auto* region = static_cast<uint8_t*>(
      mmap(nullptr, 2 * attempts * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
  if (region == MAP_FAILED) return false;
  for (size_t i = 0; i < attempts; ++i) {
    if (munmap(region + (2 * i + 1) * page, page) != 0) return errno == ENOMEM;
  }
  return false;
}

TEST_F(Memory, WhatTheSystemWontTakeBackEndsTheProcess) {
#if defined(VELDNLS_ADDRESS_SANITIZER)
  GTEST_SKIP() << "the sanitizer needs mappings of its own";
#endif
  if (test::threadSanitizer) GTEST_SKIP() << "the sanitizer needs mappings of its own";
  constexpr int tooMany = 77;
  for (const bool code : {false, true}) {
    const test::Ending ending = test::runInChild([&] {
      setOption(1);
      void* memory = code ? hscgmalloc(&host.vector, 3 * page, nullptr) : hshimalloc(&host.vector, 3 * page);
      uint8_t* middle = static_cast<uint8_t*>(memory) + page;
      if (!useUpMappings()) _exit(tooMany);
      if (code) {
        hscgfree(&host.vector, middle, page);
      } else {
        hshifree(&host.vector, middle, page);
      }
    });
    if (ending.exitCode == tooMany) GTEST_SKIP() << "this system allows too many mappings";
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_TRUE(
        holds(ending.output, code ? "hscgfree: MEM_RELEASE error: addr=0x" : "hshifree: MEM_RELEASE error: maddr=0x"))
        << ending.output;
    EXPECT_TRUE(holds(ending.output, "size=4096 error=12\n")) << ending.output;
  }
}

TEST_F(Memory, CodePagesAreExecutableAndZero) {
  int zero = 0;
  auto* memory = static_cast<uint8_t*>(hscgmalloc(&host.vector, 5000, &zero));
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(zero, 1);
  EXPECT_EQ(protectionOf(memory), "rwxp");
  EXPECT_TRUE(test::allBytes(memory, 5000, 0));
  hscgfree(&host.vector, memory, 5000);
  EXPECT_EQ(protectionOf(memory), "");
  // The answer about zero may be left out.
  hscgfree(&host.vector, hscgmalloc(&host.vector, page, nullptr), page);
}

TEST_F(Memory, FailureOfCodePagesIsTraced) {
  const test::Ending ending = test::runInChild([&] {
    const test::RefuseNth refuse(host.memory, 1);
    if (hscgmalloc(&host.vector, 6000, nullptr) != nullptr) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_TRUE(holds(ending.output, "hscgmalloc: VirtualAlloc failed: size=6000 errno=12\n")) << ending.output;
}

TEST_F(Memory, ExecutablePoolsHaveExecutableZeroChunks) {
  const uint32_t inUse = context->inUse;
  XmPool* pool = xmcreate(&host.vector, page, page, XM_EXECUTABLE);
  ASSERT_NE(pool, nullptr);
  EXPECT_EQ(pool->chunks->state, XM_CHUNK_FIRST | XM_CHUNK_ZERO);
  void* block = xmalloc(&host.vector, pool, 64, 0);
  EXPECT_EQ(protectionOf(block), "rwxp");
  xmalloc(&host.vector, pool, 3 * page, 0);
  EXPECT_EQ(context->inUse, inUse);
  xmdestroy(&host.vector, pool);
  EXPECT_EQ(protectionOf(block), "");
}

TEST_F(Memory, HighPoolsDontCountAgainstTheLimit) {
  setOption(1);
  XmPool* pool = xmcreate(&host.vector, page, page, XM_HIGH_MEMORY | XM_ZERO);
  ASSERT_NE(pool, nullptr);
  const uint32_t inUse = context->inUse;
  xmsetlimit(&host.vector, 0);
  auto* block = static_cast<uint8_t*>(xmalloc(&host.vector, pool, 5 * page, 0));
  ASSERT_NE(block, nullptr);
  EXPECT_TRUE(test::allBytes(block, 5 * page, 0));
  EXPECT_EQ(context->inUse, inUse);
  xmdestroy(&host.vector, pool);
}

TEST_F(Memory, HighPoolsOfPlainMemoryCount) {
  setOption(0);
  const uint32_t inUse = context->inUse;
  XmPool* pool = xmcreate(&host.vector, page, page, XM_HIGH_MEMORY);
  EXPECT_EQ(context->inUse, inUse + page);
  xmdestroy(&host.vector, pool);
  EXPECT_EQ(context->inUse, inUse);
}

TEST_F(Memory, TermTakesTheHandleOfTheInitialisation) {
  const XmContext* context2 = context;
  for (const void* handle : {static_cast<const void*>(nullptr), static_cast<const void*>(&context2)}) {
    const test::Ending ending = test::runInChild([&] { hsmemterm(&host.vector, handle); });
    EXPECT_EQ(ending.signal, SIGABRT);
    EXPECT_TRUE(holds(ending.output, "Aborting from invalid hsmemterm request\n")) << ending.output;
  }
  const test::Ending bare = test::runInChild([&] { hsmemterm(nullptr, nullptr); });
  EXPECT_EQ(bare.signal, SIGABRT);
  setOption(1);
  hshifree(&host.vector, hshimalloc(&host.vector, page), page);
  host.closeHighMemory();
  EXPECT_EQ(context->highMemoryState, -1);
}

// Memory that is still out goes back to where it came from.
TEST_F(Memory, PoolsMayEndAfterTerm) {
  for (const int32_t state : {0, 1}) {
    test::HostRecords own;
    optionValue = state;
    own.memory.readOption = readOption;
    const uint32_t inUse = own.memory.context->inUse;
    XmPool* pool = xmcreate(&own.vector, page, 0, XM_HIGH_MEMORY);
    const uint8_t* start = pool->chunks->start;
    own.closeHighMemory();
    xmdestroy(&own.vector, pool);
    EXPECT_EQ(own.memory.context->inUse, inUse);
    EXPECT_EQ(protectionOf(start), state == 0 ? "rw-p" : "");
  }
}

TEST_F(Memory, HighMemoryWinsOverExecutable) {
  setOption(1);
  XmPool* pool = xmcreate(&host.vector, page, page, XM_HIGH_MEMORY | XM_EXECUTABLE);
  ASSERT_NE(pool, nullptr);
  EXPECT_EQ(optionReads, 1);
  EXPECT_EQ(pool->chunks->state, XM_CHUNK_FIRST);
  EXPECT_EQ(protectionOf(pool->chunks->start), "rw-p");
  xmdestroy(&host.vector, pool);
}

// Room for two neighbours of `size` bytes that the system hands out next; null if it can't be arranged.
class NeighbourRoom {
 public:
  explicit NeighbourRoom(size_t size) : size_(size), room_(map(2 * size)) {
    constexpr int mostGaps = 10'000;
    // The system takes the highest gap: all above the room are filled.
    for (int i = 0; i < mostGaps; ++i) {
      uint8_t* gap = map(size);
      if (gap < room_) {
        munmap(gap, size);
        arranged_ = true;
        return;
      }
      gaps_.push_back(gap);
    }
  }
  ~NeighbourRoom() {
    for (uint8_t* gap : gaps_) munmap(gap, size_);
  }
  NeighbourRoom(const NeighbourRoom&) = delete;
  NeighbourRoom& operator=(const NeighbourRoom&) = delete;

  bool arranged() const { return arranged_; }
  uint8_t* first() const { return room_; }
  uint8_t* second() const { return room_ + size_; }
  void open(uint8_t* place) const { munmap(place, size_); }

 private:
  static uint8_t* map(size_t size) {
    return static_cast<uint8_t*>(mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
  }

  size_t size_;
  uint8_t* room_;
  std::vector<uint8_t*> gaps_;
  bool arranged_ = false;
};

TEST_F(Memory, MergedPagesGoBackInOneCall) {
  // The room is smaller than a large page, which would be aligned in its own way.
  constexpr uint32_t size = 192 * page;
  constexpr int notArranged = 77;
  for (const uint32_t flags : {XM_HIGH_MEMORY, XM_EXECUTABLE}) {
    const test::Ending ending = test::runInChild([&] {
      setOption(2);
      XmPool* pool = xmcreate(&host.vector, 0, size, flags);
      const NeighbourRoom room(size);
      if (!room.arranged()) _exit(notArranged);
      room.open(room.first());
      if (xmalloc(&host.vector, pool, size, 0) != room.first()) _exit(notArranged);
      room.open(room.second());
      if (xmalloc(&host.vector, pool, size, 0) != room.second()) _exit(notArranged);
      if (pool->chunks->next != nullptr || pool->chunks->end != room.second() + size) std::abort();
      xmdestroy(&host.vector, pool);
      if (protectionOf(room.first()) + protectionOf(room.second()) != "") std::abort();
    });
    if (ending.exitCode == notArranged) GTEST_SKIP() << "this system places memory in its own way";
    EXPECT_EQ(ending.signal, 0);
    EXPECT_EQ(ending.exitCode, 0) << ending.output;
    if (flags == XM_HIGH_MEMORY) {
      EXPECT_TRUE(holds(ending.output, "hshifree: maddr=0x")) << ending.output;
      EXPECT_TRUE(holds(ending.output, " msize=" + std::to_string(2 * size) + "\n")) << ending.output;
    }
  }
}

HtMutex* highMemoryLock(XmContext* context) {
  return &reinterpret_cast<veldnls::hs::ContextBlock*>(context)->highMemoryLock;
}

void spoil(HtMutex* mutex) { std::memset(mutex, 0xFF, sizeof *mutex); }

XmContext* spoiledContext = nullptr;
const VeldInputVector* spoiledHost = nullptr;

TEST_F(Memory, AMutexThatCannotBeMadeAborts) {
  const test::Ending ending = test::runInChild([] {
    VeldMemoryRecord memory{};
    VeldInputVector vector{};
    vector.memory = &memory;
    mutexesToMake = 0;
    xminit(&vector);
  });
  EXPECT_EQ(ending.signal, SIGABRT);
  EXPECT_TRUE(holds(ending.output, " VELD- mutex_init failed: 11 file=hs/src/hsmem line=")) << ending.output;
  EXPECT_TRUE(holds(ending.output, ": \n")) << ending.output;
}

// Of the six locks of a fresh context only the first aborts.
TEST_F(Memory, WithoutALockThereIsNoContext) {
  for (int made = 1; made <= 6; ++made) {
    VeldMemoryRecord memory{};
    VeldInputVector vector{};
    vector.memory = &memory;
    const int alive = mutexesAlive;
    mutexesToMake = made;
    const XmContext* context2 = xminit(&vector);
    mutexesToMake = -1;
    EXPECT_EQ(context2 != nullptr, made == 6) << made;
    EXPECT_EQ(memory.context, context2);
    if (context2 != nullptr) {
      hsmemterm(&vector, memory.context);
      xmterm(&vector, memory.context);
    }
    EXPECT_EQ(mutexesAlive, alive) << made;
  }
}

TEST_F(Memory, WithoutALockThereIsNoPool) {
  const uint32_t inUse = context->inUse;
  XmPool* const pools = context->pools;
  mutexesToMake = 0;
  XmPool* pool = xmcreate(&host.vector, page, page, 0);
  mutexesToMake = -1;
  EXPECT_EQ(pool, nullptr);
  EXPECT_EQ(context->inUse, inUse);
  EXPECT_EQ(context->pools, pools);
  const int alive = mutexesAlive;
  const test::RefuseNth refuse(host.memory, 3);
  EXPECT_EQ(xmcreate(&host.vector, page, page, 0), nullptr);
  EXPECT_TRUE(refuse.refused());
  EXPECT_EQ(mutexesAlive, alive);
}

TEST_F(Memory, MutexFailuresAbort) {
  if (test::threadSanitizer) GTEST_SKIP() << "the sanitizer stops at a spoiled mutex itself";
  const test::Ending lock = test::runInChild([&] {
    spoil(highMemoryLock(context));
    hshimalloc(&host.vector, page);
  });
  EXPECT_EQ(lock.signal, SIGABRT);
  EXPECT_TRUE(holds(lock.output, "mutex_lock failed: 22 file=hs/src/hsmem line=")) << lock.output;
  EXPECT_TRUE(holds(lock.output, ": \n")) << lock.output;

  const test::Ending unlock = test::runInChild([&] {
    spoiledContext = context;
    host.memory.readOption = [](const char*, int32_t*) -> int32_t {
      spoil(highMemoryLock(spoiledContext));
      return 1;
    };
    hshimalloc(&host.vector, page);
  });
  EXPECT_EQ(unlock.signal, SIGABRT);
  EXPECT_TRUE(holds(unlock.output, "mutex_unlockfailed: 22 file=hs/src/hsmem line=")) << unlock.output;

  const test::Ending destroy = test::runInChild([&] {
    spoiledHost = &host.vector;
    host.memory.readOption = [](const char*, int32_t*) -> int32_t {
      hsmemterm(spoiledHost, spoiledHost->memory->context);
      return 1;
    };
    hshimalloc(&host.vector, page);
  });
  EXPECT_EQ(destroy.signal, SIGABRT);
  EXPECT_TRUE(holds(destroy.output, "mutex_destroy failed: 16 file=hs/src/hsmem line=")) << destroy.output;
}

}  // namespace
