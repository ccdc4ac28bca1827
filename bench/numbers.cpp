#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/groups.h"
#include "bench/number_values.h"

namespace bench {

namespace {

// What a caller passes for a number: enough for any integer with its separators.
constexpr int32_t room = 32;

struct Place {
  const char* name;
  const char16_t* wideName;
  char decimalPoint;
};

constexpr Place places[] = {{"en_US", u"en_US", '.'}, {"de_DE", u"de_DE", ','}};
constexpr int32_t nameLength = 5;

using Locale = std::unique_ptr<QZLocale, NlsStatus (*)(void*)>;

Locale makeLocale(const Library& library, const Place& place) {
  QZNLS& nls = library.nls();
  Locale locale(nls.createLocale(&nls, place.wideName, nameLength), [](void* handle) {
    auto* made = static_cast<QZLocale*>(handle);
    return made->destroy(made);
  });
  if (locale == nullptr) throw std::runtime_error(std::string("no locale ") + place.name);
  return locale;
}

// How a formatter is called.
struct Format {
  int32_t width;
  int32_t precision;
  uint32_t flags;
};

template <class Value>
using Slot = NlsStatus (*)(QZLocale*, Value, int32_t, int32_t, uint32_t, char16_t*, int32_t, int32_t*);

template <class Value>
Slot<Value> formatter(const QZLocale& locale) {
  if constexpr (std::is_same_v<Value, double>) {
    return locale.formatDouble;
  } else {
    return locale.formatInt64;
  }
}

template <class Value>
auto librarysFormat(QZLocale* locale, const Format& format) {
  return [locale, slot = formatter<Value>(*locale), format, output = std::vector<char16_t>(room)](Value value) mutable {
    int32_t length = 0;
    const NlsStatus status =
        slot(locale, value, format.width, format.precision, format.flags, output.data(), room, &length);
    if (status != 0) length = 0;
    benchmark::ClobberMemory();
    return std::u16string_view(output.data(), static_cast<size_t>(length));
  };
}

template <class Value, class... How>
auto peersFormat(How... how) {
  return [how..., output = std::vector<char>(2 * room)](Value value) mutable {
    char* end = std::to_chars(output.data(), output.data() + output.size(), value, how...).ptr;
    benchmark::ClobberMemory();
    return std::string_view(output.data(), static_cast<size_t>(end - output.data()));
  };
}

// Formats all values in turn, each into the same output. The call stands in the loop itself.
template <class Value, class Call>
Candidate candidate(const char* name, const std::vector<Value>& items, Call call) {
  return {name, [&items, call]() mutable {
            for (const Value item : items) benchmark::DoNotOptimize(call(item));
          }};
}

// A text of the library as its peers would write it: without blanks and separators, with a point.
std::string plain(std::u16string_view text, const Place& place) {
  const char separator = place.decimalPoint == ',' ? '.' : ',';
  std::string result;
  for (const char16_t unit : text) {
    const auto letter = static_cast<char>(unit);
    if (letter == place.decimalPoint) {
      result.push_back('.');
    } else if (letter != ' ' && letter != separator) {
      result.push_back(letter);
    }
  }
  return result;
}

[[noreturn]] void differs(const Subject& subject, const std::string& own, const std::string& peers) {
  throw std::runtime_error(subject.op + ", " + subject.text + ": \"" + own + "\" where a peer has \"" + peers + "\"");
}

class Numbers {
 public:
  Numbers(Runner& runner, const Library& library) : runner_(runner) {
    for (size_t i = 0; i < std::size(places); ++i) locales_.push_back(makeLocale(library, places[i]));
  }

  // The peer writes the same text.
  template <class Value, class... How>
  void format(const char* op, const char* peer, const Values<Value>& values, const Format& format, How... how) {
    for (size_t i = 0; i < std::size(places); ++i) {
      const Subject subject{"numbers", op, values.name, places[i].name};
      if (!runner_.wants(subject)) continue;
      auto own = librarysFormat<Value>(locales_[i].get(), format);
      auto peers = peersFormat<Value>(how...);
      for (const Value value : values.items) {
        const std::string text = plain(own(value), places[i]);
        if (text != peers(value)) differs(subject, text, std::string(peers(value)));
      }
      run(subject, values.items.size(), candidate("veldnls", values.items, own), candidate(peer, values.items, peers));
    }
  }

  // A field has fewer digits than the peer, or an exponent of another form: the text stands for nearly the same value.
  void field(const char* op, const Values<double>& values, const Format& format) {
    const Subject subject{"numbers", op, values.name, places[0].name};
    if (!runner_.wants(subject)) return;
    auto own = librarysFormat<double>(locales_[0].get(), format);
    auto peers = peersFormat<double>(std::chars_format::general);
    for (const double value : values.items) {
      const std::string text = plain(own(value), places[0]);
      double back = NAN;
      std::from_chars(text.data(), text.data() + text.size(), back);
      if (!(std::abs(back - value) <= 1e-2 + 1e-5 * std::abs(value))) differs(subject, text, std::string(peers(value)));
    }
    run(subject, values.items.size(), candidate("veldnls", values.items, own),
        candidate("std::to_chars, shortest", values.items, peers));
  }

  void parseDoubles(const Values<double>& values) {
    for (size_t i = 0; i < std::size(places); ++i) {
      const Subject subject{"numbers", "parseDouble", values.name, places[i].name};
      if (!runner_.wants(subject)) continue;
      parse(subject, values, writtenTexts(values, places[i].decimalPoint),
            [locale = locales_[i].get(), slot = locales_[i]->parseDouble](std::u16string_view text) {
              double value = NAN;
              int32_t consumed = 0;
              slot(locale, text.data(), static_cast<int32_t>(text.size()), &value, &consumed);
              return value;
            });
    }
  }

  void parseIntegers(const Values<int64_t>& values) {
    const Subject subject{"numbers", "parseInt64", values.name, places[0].name};
    if (!runner_.wants(subject)) return;
    parse(subject, values, writtenTexts(values, '.'),
          [locale = locales_[0].get(), slot = locales_[0]->parseInt64](std::u16string_view text) {
            int64_t value = 0;
            int32_t consumed = 0;
            slot(locale, text.data(), static_cast<int32_t>(text.size()), 0, &value, &consumed);
            return value;
          });
  }

 private:
  template <class Value, class Call>
  void parse(const Subject& subject, const Values<Value>& values, const NumberTexts& texts, Call own) {
    const auto peers = [](std::string_view text) {
      Value value{};
      std::from_chars(text.data(), text.data() + text.size(), value);
      return value;
    };
    for (size_t i = 0; i < texts.size(); ++i) {
      const Value expected = values.items[i];
      if (own(texts.wideAt(i)) != expected || peers(texts.narrowAt(i)) != expected) {
        differs(subject, std::string(texts.narrowAt(i)), std::to_string(expected));
      }
    }
    run(subject, texts.size(),
        {"veldnls",
         [&] {
           for (size_t i = 0; i < texts.size(); ++i) {
             benchmark::DoNotOptimize(own(texts.wideAt(i)));
           }
         }},
        {"std::from_chars", [&] {
           for (size_t i = 0; i < texts.size(); ++i) benchmark::DoNotOptimize(peers(texts.narrowAt(i)));
         }});
  }

  void run(const Subject& subject, size_t calls, Candidate own, Candidate peers) {
    runner_.run({subject, 0, calls, {std::move(own), std::move(peers)}});
  }

  Runner& runner_;
  std::vector<Locale> locales_;
};

void runDoubles(Numbers& numbers) {
  using std::chars_format;
  const Values<double> prices = priceValues();
  const Values<double> integers = wholeValues();
  const Values<double> any = longDoubles();
  constexpr const char* fixed = "formatDouble fixed";
  numbers.format(fixed, "std::to_chars", prices, {0, 2, FMT_FIXED}, chars_format::fixed, 2);
  numbers.format(fixed, "std::to_chars", integers, {0, 0, FMT_FIXED}, chars_format::fixed, 0);
  numbers.format(fixed, "std::to_chars", any, {0, 6, FMT_FIXED}, chars_format::fixed, 6);
  numbers.format("formatDouble grouped", "std::to_chars", prices, {0, 2, FMT_FIXED | FMT_GROUP}, chars_format::fixed,
                 2);
  constexpr const char* general = "formatDouble general";
  for (const Values<double>* values : {&prices, &integers}) {
    numbers.format(general, "std::to_chars", *values, {0, 15, FMT_GENERAL}, chars_format::general, 15);
  }
  numbers.format(general, "std::to_chars", any, {0, 17, FMT_GENERAL}, chars_format::general, 17);
  for (const Values<double>* values : {&prices, &integers, &any}) {
    numbers.field("formatDouble field BEST 12", *values, {12, 0, FMT_BEST});
    numbers.field("formatDouble field 20.2", *values, {20, 2, FMT_FIELD_DECIMAL});
    numbers.field("formatDouble field E 20", *values, {20, 0, FMT_FIELD_EXPONENT});
    numbers.parseDoubles(*values);
  }
}

void runIntegers(Numbers& numbers) {
  for (const Values<int64_t>& values : {shortIntegers(), longIntegers(), anyIntegers()}) {
    numbers.format("formatInt64", "std::to_chars", values, {0, 0, 0});
    numbers.format("formatInt64 width 20", "std::to_chars", values, {20, 0, 0});
    numbers.format("formatInt64 grouped", "std::to_chars", values, {0, 0, FMT_GROUP});
    numbers.parseIntegers(values);
  }
}

}  // namespace

void runNumbers(Runner& runner, const Library& library) {
  Numbers numbers(runner, library);
  runDoubles(numbers);
  runIntegers(numbers);
}

}  // namespace bench
