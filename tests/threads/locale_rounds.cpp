#include "threads/locale_rounds.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "transcode/harness.h"
#include "veldnls/nls.h"

namespace threads_test {

namespace {

using transcode_test::nls;

constexpr const char16_t* names[] = {u"en_US", u"de_DE", u"tr_TR", u"ja_JP", u"ar_EG", u"hi_IN", u"fa_IR", u"zh_TW"};

// The text of every formatter, each with what the parser makes of it.
class Everything {
 public:
  explicit Everything(QZLocale* locale) : locale_(locale) {}

  std::u16string of(double value, int64_t integer) {
    add(&QZLocale::formatDouble, value, 0, 17, FMT_GENERAL);
    addReal();
    add(&QZLocale::formatDouble, value, 24, 3, FMT_FIXED | FMT_GROUP);
    add(&QZLocale::formatDouble, value, 12, 0, FMT_BEST);
    add(&QZLocale::formatCurrency, value, 30, 2, 0U);
    add(&QZLocale::formatPercent, value, 30, 1, FMT_PERCENT_PARENTHESES);
    add(&QZLocale::formatInt64, integer, 0, 0, FMT_GROUP);
    add(&QZLocale::formatInt64, integer, 24, 0, FMT_ZERO);
    addInteger<int64_t>(&QZLocale::parseInt64, 0);
    add(&QZLocale::formatUInt64, static_cast<uint64_t>(integer), 20, 0, FMT_HEX);
    addInteger<uint64_t>(&QZLocale::parseUInt64, PARSE_HEX);
    add(&QZLocale::formatInt32, static_cast<int32_t>(-integer), 0, 12, 0U);
    addInteger<int32_t>(&QZLocale::parseInt32, 0);
    add(&QZLocale::formatUInt32, static_cast<uint32_t>(integer), 0, 0, FMT_GROUP);
    addInteger<uint32_t>(&QZLocale::parseUInt32, 0);
    add(&QZLocale::formatDate, static_cast<uint32_t>(integer % 12 + 1), 17U, 2011U, NLS_DATE_STYLE_LONG);
    addDate();
    add(&QZLocale::formatTime, static_cast<double>(integer), NLS_TIME_STYLE_12);
    addTime();
    add(&QZLocale::formatDateTime, static_cast<double>(integer), 0U);
    addMoment();
    add(&QZLocale::getLanguage);
    add(&QZLocale::getLocaleName);
    return all_;
  }

 private:
  template <class Slot, class... Arguments>
  void add(Slot QZLocale::*slot, Arguments... arguments) {
    int32_t length = 0;
    if constexpr (sizeof...(Arguments) == 0) {
      addNumber((locale_->*slot)(locale_, text_, &length));
    } else {
      addNumber((locale_->*slot)(locale_, arguments..., text_, capacity, &length));
    }
    length_ = length;
    all_.append(text_, static_cast<size_t>(length));
  }
  void addReal() {
    double value = 0;
    int32_t consumed = 0;
    addNumber(locale_->parseDouble(locale_, text_, length_, &value, &consumed));
    addNumber(value);
  }
  template <class Value, class Slot>
  void addInteger(Slot QZLocale::*slot, uint32_t flags) {
    Value value = 0;
    int32_t consumed = 0;
    addNumber((locale_->*slot)(locale_, text_, length_, flags, &value, &consumed));
    addNumber(value);
  }
  void addDate() {
    uint32_t month = 0, day = 0, year = 0;
    int32_t consumed = 0;
    addNumber(locale_->parseDate(locale_, text_, length_, NLS_DATE_STYLE_LONG, &month, &day, &year, &consumed));
    addNumber(month + 100 * day + 10000 * year);
  }
  void addTime() {
    double value = 0;
    int32_t consumed = 0;
    addNumber(locale_->parseTime(locale_, text_, length_, NLS_TIME_STYLE_12, &value, &consumed));
    addNumber(value);
  }
  void addMoment() {
    double value = 0;
    int32_t consumed = 0;
    addNumber(locale_->parseDateTime(locale_, text_, length_, 0, &value, &consumed));
    addNumber(value);
  }

  template <class Value>
  void addNumber(Value value) {
    for (const char digit : std::to_string(value)) all_ += static_cast<char16_t>(digit);
    all_ += u'\n';
  }

  static constexpr int32_t capacity = 400;
  QZLocale* locale_;
  char16_t text_[capacity] = {};
  int32_t length_ = 0;
  std::u16string all_;
};

QZLocale* make(const char16_t* name) { return nls()->createLocale(nls(), name, 5); }

struct Job {
  const char16_t* name;
  QZLocale* locale;
  double value;
  int64_t integer;
  std::u16string wanted = {};

  std::u16string run(QZLocale* with) const { return Everything(with).of(value, integer); }
};

std::vector<Job> makeJobs() {
  constexpr double values[] = {0, 1234567.891, -0.5, 1e100, -9.99e-7, 4.9e-324};
  std::vector<Job> jobs;
  int64_t integer = 1;
  for (const char16_t* name : names) {
    for (const double value : values) {
      Job job{name, jobs.empty() || jobs.back().name != name ? make(name) : jobs.back().locale, value, integer};
      job.wanted = job.run(job.locale);
      jobs.push_back(job);
      integer = integer * 7 % 1000000007;
    }
  }
  return jobs;
}

// The same with a locale of the thread's own.
bool succeedsAnew(const Job& job) {
  QZLocale* locale = make(job.name);
  if (locale == nullptr) return false;
  const bool equal = job.run(locale) == job.wanted;
  return locale->destroy(locale) == 0 && equal;
}

}  // namespace

void hammerSharedLocales(int rounds) {
  constexpr size_t threadCount = 16;
  const std::vector<Job> jobs = makeJobs();
  std::atomic<int> failures = 0;
  std::barrier start(static_cast<std::ptrdiff_t>(threadCount));
  std::vector<std::thread> threads;
  for (size_t index = 0; index < threadCount; ++index) {
    threads.emplace_back([&, index] {
      start.arrive_and_wait();
      for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < jobs.size(); ++i) {
          const Job& job = jobs[(i + 5 * index) % jobs.size()];
          if (job.run(job.locale) != job.wanted) ++failures;
          if ((i + index) % 8 == 0 && !succeedsAnew(job)) ++failures;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  for (size_t i = 0; i < jobs.size(); ++i) {
    if (i == 0 || jobs[i].locale != jobs[i - 1].locale) jobs[i].locale->destroy(jobs[i].locale);
  }
}

}  // namespace threads_test
