// The look-up of messages, over a host's locks, lists and modules.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <set>
#include <thread>

#include "faults/failing_memory.h"
#include "locale/locale_object_support.h"
#include "support/death.h"
#include "support/message_services.h"

namespace {

constexpr NlsStatus otherStatus = 0x12345;

class LocaleObjectMessages : public testing::Test {
 protected:
  LocaleObjectMessages() { host.memory.services = &test::MessageServices::table; }
  ~LocaleObjectMessages() override {
    EXPECT_EQ(state.locks, 0);
    EXPECT_EQ(state.lists, 0);
    EXPECT_EQ(state.modules, 0) << "a module belongs to the list that holds it";
    host.memory.services = nullptr;
  }

  void know(const std::u16string& language, const std::u16string& text, NlsStatus status = 0) {
    test::Messages& messages = state.known[u"t0a0" + language];
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
  test::MessageServices state{[](const char* what) { ADD_FAILURE() << "broken: " << what; }};
};

TEST_F(LocaleObjectMessages, LockAndListOfALocale) {
  const test::LocaleHandle locale = test::makeLocale(host.nls, "de_DE");
  ASSERT_NE(locale, nullptr);
  EXPECT_STREQ(static_cast<test::MessageLock*>(locale->messageLock)->name, "qznls Locale QZMSG lock");
  EXPECT_EQ(static_cast<test::MessageLock*>(locale->messageLock)->params, (std::vector<int32_t>{0, 0, 0, 0}));
  const auto* list = static_cast<test::MessageList*>(locale->messageTrack);
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
  uint64_t used = 0;  // when a lock ended
  state.atEndOfLock = [&] { used = faults_test::usedBytes(host.nls->pool); };
  test::makeLocale(host.nls, "de_DE").reset();
  EXPECT_GT(used, before + sizeof(LocaleRecord));
  state.refuseList = true;
  EXPECT_EQ(test::makeLocale(host.nls, "de_DE"), nullptr);
  EXPECT_GT(used, before) << "the object is still there";
  EXPECT_LT(used, before + sizeof(LocaleRecord));
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
  state.beforeLoad = [&] {
    while (state.acquired < 2) std::this_thread::yield();
  };
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
