// The look-up of messages, over a host's locks, lists and modules.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "faults/failing_memory.h"
#include "locale/locale_object_support.h"
#include "support/death.h"

namespace {

struct Lock {
  NLS_HANDLE_FIELDS
  std::mutex mutex;
  std::vector<int32_t> params;
};

struct List {
  NLS_HANDLE_FIELDS
  std::mutex mutex;
  std::map<std::string, NlsExtension*> entries;  // by the bytes of the key; the list's own
  std::vector<int32_t> params;
  std::vector<std::pair<int32_t, int32_t>> options;
};

// What the modules of a language answer, and how often they were asked.
struct Messages {
  std::u16string text;
  NlsStatus status = 0;
  std::atomic<int> asked{0};
};

struct MessageModule {
  NLS_EXTENSION_FIELDS
  Messages* messages;
};

// What the services share with a test. One test runs at a time.
struct Services {
  std::map<std::u16string, Messages> known;  // of modules that can be loaded, by key
  std::vector<std::u16string> loads;         // names asked for, in order
  std::atomic<int> acquiring{0};             // calls of lockAcquire so far
  int awaited = 0;                           // of these, before a load goes on
  NlsStatus acquireStatus = 0;
  NlsStatus insertStatus = 0;
  bool refuseLock = false;
  bool refuseList = false;
  int locks = 0;
  int lists = 0;
  int modules = 0;  // that were made and not released
  const XmPool* pool = nullptr;
  uint64_t usedWhenALockEnded = 0;  // of the pool
};
Services* services;

NlsStatus endLock(void* handle) {
  --services->locks;
  services->usedWhenALockEnded = faults_test::usedBytes(services->pool);
  delete static_cast<Lock*>(handle);
  return 0;
}

NlsStatus endList(void* handle) {
  --services->lists;
  for (const auto& [key, value] : static_cast<List*>(handle)->entries) EXPECT_EQ(value->destroy(value), 0u);
  delete static_cast<List*>(handle);
  return 0;
}

void* lockCreate(void*, const int32_t* params, void*, const char* name) {
  if (services->refuseLock) return nullptr;
  ++services->locks;
  auto* lock = new Lock();
  lock->destroy = endLock;
  lock->name = name;
  lock->params.assign(params, params + 4);
  return lock;
}

void* listCreate(void*, const int32_t* params, void*, const char* name) {
  if (services->refuseList) return nullptr;
  ++services->lists;
  auto* list = new List();
  list->destroy = endList;
  list->name = name;
  list->params.assign(params, params + 4);
  return list;
}

NlsStatus treeSetOption(void* tree, int32_t option, int32_t value) {
  static_cast<List*>(tree)->options.emplace_back(option, value);
  return 0;
}

NlsStatus lockAcquire(void* handle, int32_t exclusive, int32_t wait) {
  EXPECT_EQ(exclusive, 1);
  EXPECT_EQ(wait, 1);
  if (services->acquireStatus != 0) return services->acquireStatus;
  ++services->acquiring;
  static_cast<Lock*>(handle)->mutex.lock();
  return 0;
}

NlsStatus lockRelease(void* handle) {
  static_cast<Lock*>(handle)->mutex.unlock();
  return 0;
}

std::string keyOf(const void* key, int32_t length) {
  EXPECT_EQ(length, 12);
  return {static_cast<const char*>(key), static_cast<size_t>(length)};
}

void* treeSearch(void* tree, void*, void*, const void* key, int32_t length) {
  auto* list = static_cast<List*>(tree);
  const std::lock_guard<std::mutex> guard(list->mutex);
  const auto entry = list->entries.find(keyOf(key, length));
  return entry == list->entries.end() ? nullptr : entry->second;
}

NlsStatus treeInsert(void* tree, void*, void*, void* value, int32_t, const void* key, int32_t length, int32_t) {
  if (services->insertStatus != 0) return services->insertStatus;
  auto* list = static_cast<List*>(tree);
  const std::lock_guard<std::mutex> guard(list->mutex);
  EXPECT_TRUE(list->entries.emplace(keyOf(key, length), static_cast<NlsExtension*>(value)).second) << "listed twice";
  return 0;
}

NlsStatus releaseModule(void* handle) {
  --services->modules;
  delete static_cast<MessageModule*>(handle);
  return 0;
}

void* loadExtension(void*, const char16_t* name, int32_t length, void* journal) {
  EXPECT_EQ(journal, nullptr);
  while (services->acquiring < services->awaited) std::this_thread::yield();
  services->loads.emplace_back(name, static_cast<size_t>(length));
  const auto known = services->known.find(services->loads.back());
  if (known == services->known.end()) return nullptr;
  ++services->modules;
  auto* module = new MessageModule();
  module->release = releaseModule;
  module->messages = &known->second;
  return module;
}

NlsStatus openMessageBundle(void* bundle, int32_t code, void* data, int32_t size) {
  Messages& messages = *static_cast<MessageModule*>(bundle)->messages;
  EXPECT_EQ(code, 0) << "whatever code was asked for";
  ++messages.asked;
  if (messages.status == 0) {
    const auto count = std::min(messages.text.size(), static_cast<size_t>(size));
    std::copy_n(messages.text.begin(), count, static_cast<char16_t*>(data));
  }
  return messages.status;
}

constexpr NlsStatus otherStatus = 0x12345;

class LocaleObjectMessages : public testing::Test {
 protected:
  LocaleObjectMessages() {
    services = &state;
    state.pool = host.nls->pool;
    host.memory.services = &table;
  }
  ~LocaleObjectMessages() override {
    EXPECT_EQ(state.locks, 0);
    EXPECT_EQ(state.lists, 0);
    EXPECT_EQ(state.modules, 0) << "a module belongs to the list that holds it";
    host.memory.services = nullptr;
  }

  void know(const std::u16string& language, const std::u16string& text, NlsStatus status = 0) {
    Messages& messages = state.known[u"t0a0" + language];
    messages.text = text;
    messages.status = status;
  }
  int asked(const std::u16string& language) { return state.known.at(u"t0a0" + language).asked; }

  struct Answer {
    NlsStatus status;
    std::u16string text;
    bool operator==(const Answer&) const = default;
  };
  static Answer ask(QZLocale* locale, uint32_t code = 0) {
    std::u16string text(20, u'\0');
    const NlsStatus status = locale->getLocaleMessage(locale, code, text.data(), static_cast<int32_t>(text.size()));
    text.resize(std::u16string(text.c_str()).size());
    return {status, text};
  }

  test::NlsHost host{&VELDNLSLIB};
  Services state;
  NlsHostServices table = [] {
    NlsHostServices all{};
    all.size = sizeof all;
    all.listCreate = listCreate;
    all.lockCreate = lockCreate;
    all.treeSetOption = treeSetOption;
    all.lockAcquire = lockAcquire;
    all.lockRelease = lockRelease;
    all.treeSearch = treeSearch;
    all.treeInsert = treeInsert;
    all.openMessageBundle = openMessageBundle;
    all.loadExtension = loadExtension;
    return all;
  }();
};

TEST_F(LocaleObjectMessages, LockAndListOfALocale) {
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  ASSERT_NE(locale, nullptr);
  EXPECT_STREQ(static_cast<Lock*>(locale->messageLock)->name, "qznls Locale QZMSG lock");
  EXPECT_EQ(static_cast<Lock*>(locale->messageLock)->params, (std::vector<int32_t>{0, 0, 0, 0}));
  const auto* list = static_cast<List*>(locale->messageTrack);
  EXPECT_STREQ(list->name, "qznls Locale QZMSG track");
  EXPECT_EQ(list->params, (std::vector<int32_t>{1, 0, 1, 0x20000000}));
  EXPECT_EQ(list->options, (std::vector<std::pair<int32_t, int32_t>>{{0, 1}}));
  EXPECT_EQ(state.locks, 1);
  EXPECT_EQ(state.lists, 1);
}

TEST_F(LocaleObjectMessages, WithoutLockOrListThereIsNoLocale) {
  state.refuseLock = true;
  EXPECT_EQ(test::makeLocale(host.nls, "de_DE"), nullptr);
  state.refuseLock = false;
  state.refuseList = true;
  EXPECT_EQ(test::makeLocale(host.nls, "de_DE"), nullptr);
  EXPECT_EQ(state.locks, 0) << "the lock was made first and has to go";
}

// The record is given back ahead of the lock when creation fails, and behind it when a locale is destroyed.
TEST_F(LocaleObjectMessages, ALockEndsBehindTheRecordOfALocaleThatFails) {
  const uint64_t before = faults_test::usedBytes(host.nls->pool);
  test::makeLocale(host.nls, "de_DE").reset();
  EXPECT_GT(state.usedWhenALockEnded, before + sizeof(LocaleRecord));
  state.refuseList = true;
  EXPECT_EQ(test::makeLocale(host.nls, "de_DE"), nullptr);
  EXPECT_GT(state.usedWhenALockEnded, before) << "the object is still there";
  EXPECT_LT(state.usedWhenALockEnded, before + sizeof(LocaleRecord));
}

TEST_F(LocaleObjectMessages, TheModuleOfTheLanguageAnswers) {
  know(u"de", u"Hallo");
  know(u"en", u"Hello");
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_AT");
  EXPECT_EQ(ask(locale.get(), 0x803FE80B), (Answer{0, u"Hallo"}));
  EXPECT_EQ(state.loads, (std::vector<std::u16string>{u"t0a0de"}));
  EXPECT_EQ(asked(u"de"), 1);
  EXPECT_EQ(asked(u"en"), 0);
}

TEST_F(LocaleObjectMessages, EnglishStandsIn) {
  know(u"en", u"Hello");
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(locale.get()), (Answer{0, u"Hello"}));
  EXPECT_EQ(state.loads, (std::vector<std::u16string>{u"t0a0de", u"t0a0en"}));
}

TEST_F(LocaleObjectMessages, AModuleIsAskedByTheCallThatLoadsItOnly) {
  know(u"de", u"Hallo");
  know(u"en", u"Hello");
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(locale.get()), (Answer{0, u"Hallo"}));
  EXPECT_EQ(ask(locale.get()), (Answer{0, u"Hello"}));
  EXPECT_EQ(ask(locale.get()), (Answer{nlsMessageNotFound, u""}));
  EXPECT_EQ(ask(locale.get()), (Answer{nlsMessageNotFound, u""}));
  EXPECT_EQ(asked(u"de"), 1);
  EXPECT_EQ(asked(u"en"), 1);
  EXPECT_EQ(state.loads.size(), 2u);
  // Another locale has a list of its own.
  const test::LocaleHandle other = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(other.get()), (Answer{0, u"Hallo"}));
}

TEST_F(LocaleObjectMessages, WithoutAnyModule) {
  const test::LocaleHandle german = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(german.get()), (Answer{nlsMessageNotFound, u""}));
  EXPECT_EQ(state.loads, (std::vector<std::u16string>{u"t0a0de", u"t0a0en"}));
  // A module that can't be loaded isn't listed: the next call tries again.
  know(u"de", u"Hallo");
  EXPECT_EQ(ask(german.get()), (Answer{0, u"Hallo"}));
  state.loads.clear();
  const test::LocaleHandle english = test::makeLocale(host.nls, "en_GB");
  EXPECT_EQ(ask(english.get()), (Answer{nlsMessageNotFound, u""}));
  EXPECT_EQ(state.loads, (std::vector<std::u16string>{u"t0a0en", u"t0a0en"}));
}

TEST_F(LocaleObjectMessages, AModuleWithoutTheTextLeavesItToEnglish) {
  know(u"de", u"", otherStatus);
  know(u"en", u"Hello");
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(locale.get()), (Answer{0, u"Hello"}));
  EXPECT_EQ(asked(u"de"), 1);
}

TEST_F(LocaleObjectMessages, TheStatusIsThatOfTheLastModuleAsked) {
  know(u"de", u"", otherStatus);
  const test::LocaleHandle german = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(german.get()), (Answer{otherStatus, u""})) << "no module for English";
  know(u"en", u"", otherStatus + 1);
  const test::LocaleHandle second = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(second.get()), (Answer{otherStatus + 1, u""}));
  const test::LocaleHandle english = test::makeLocale(host.nls, "en_US");
  EXPECT_EQ(ask(english.get()), (Answer{otherStatus + 1, u""})) << "listed by the first attempt";
  EXPECT_EQ(ask(english.get()), (Answer{nlsMessageNotFound, u""}));
}

TEST_F(LocaleObjectMessages, ALockThatIsRefusedEndsTheCall) {
  know(u"de", u"Hallo");
  state.acquireStatus = otherStatus;
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(locale.get()), (Answer{otherStatus, u""}));
  EXPECT_TRUE(state.loads.empty());
}

TEST_F(LocaleObjectMessages, AModuleThatCannotBeListedIsDestroyed) {
  know(u"de", u"Hallo");
  know(u"en", u"Hello");
  state.insertStatus = otherStatus;
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  EXPECT_EQ(ask(locale.get()), (Answer{nlsMessageTrackFailed, u""}));
  EXPECT_EQ(state.modules, 0);
  EXPECT_EQ(asked(u"de"), 0);
  EXPECT_EQ(state.loads.size(), 1u) << "English isn't tried";
  // The lock is free again.
  state.insertStatus = 0;
  EXPECT_EQ(ask(locale.get()), (Answer{0, u"Hallo"}));
}

// The loader holds the first thread until the second one waits for the lock.
TEST_F(LocaleObjectMessages, OfTwoThreadsOneLoadsAModule) {
  know(u"de", u"Hallo");
  know(u"en", u"Hello");
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  state.awaited = 2;
  Answer answers[2];
  std::thread first([&] { answers[0] = ask(locale.get()); });
  std::thread second([&] { answers[1] = ask(locale.get()); });
  first.join();
  second.join();
  std::set<std::u16string> texts;
  for (const Answer& answer : answers) {
    EXPECT_EQ(answer.status, 0u);
    texts.insert(answer.text);
  }
  // The one that came second finds the module listed and goes on to English.
  EXPECT_EQ(texts, (std::set<std::u16string>{u"Hallo", u"Hello"}));
  EXPECT_EQ(state.loads, (std::vector<std::u16string>{u"t0a0de", u"t0a0en"}));
}

TEST_F(LocaleObjectMessages, ManyThreadsOnManyLocales) {
  know(u"de", u"Hallo");
  know(u"en", u"Hello");
  for (int round = 0; round < 50; ++round) {
    const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
    std::atomic<int> german{0}, english{0}, none{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        const Answer answer = ask(locale.get());
        if (answer == Answer{0, u"Hallo"}) ++german;
        if (answer == Answer{0, u"Hello"}) ++english;
        if (answer == Answer{nlsMessageNotFound, u""}) ++none;
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(german, 1);
    EXPECT_EQ(english, 1);
    EXPECT_EQ(none, 2);
  }
}

TEST(LocaleObjectMessagesDefaults, WithoutServicesTheCallEndsTheProcess) {
  const test::NlsHost host(&VELDNLSLIB);
  const test::LocaleHandle locale = test::makeLocale(host.nls, "en_US");
  const test::Ending ending = test::runInChild([&] {
    char16_t text[10];
    locale->getLocaleMessage(locale.get(), 0, text, 10);
  });
  EXPECT_EQ(ending.signal, SIGSEGV);
  EXPECT_TRUE(ending.output.ends_with("Assertion failed: hs/src/qznlsstub/409\n")) << ending.output;
}

}  // namespace
