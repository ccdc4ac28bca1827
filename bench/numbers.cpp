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

constexpr Place places[] = {{"en_US", u"en_US", '.'}, {"de_DE", u"de_DE", ','}, {"hi_IN", u"hi_IN", '.'}};
constexpr size_t english = 0;
constexpr size_t german = 1;
constexpr size_t hindi = 2;  // groups of three digits, then of two
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

// An output that no line of the cache cuts, so that figures don't depend on the place it happens to get.
template <class Unit, size_t count>
struct Output {
  alignas(64) Unit units[count];
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
  const auto output = std::make_shared<Output<char16_t, room>>();
  return [locale, slot = formatter<Value>(*locale), format, output](Value value) {
    int32_t length = 0;
    const NlsStatus status =
        slot(locale, value, format.width, format.precision, format.flags, output->units, room, &length);
    if (status != 0) length = 0;
    benchmark::ClobberMemory();
    return std::u16string_view(output->units, static_cast<size_t>(length));
  };
}

template <class Value, class... How>
auto peersFormat(How... how) {
  const auto output = std::make_shared<Output<char, size_t{2} * room>>();
  return [how..., output](Value value) {
    char* end = std::to_chars(std::begin(output->units), std::end(output->units), value, how...).ptr;
    benchmark::ClobberMemory();
    return std::string_view(output->units, static_cast<size_t>(end - output->units));
  };
}

// Formats all values in turn, each into the same output. The call stands in the loop itself.
template <class Value, class Call>
Candidate candidate(const char* name, const std::vector<Value>& items, Call call) {
  return {name, [&items, call] {
            for (const Value item : items) benchmark::DoNotOptimize(call(item));
          }};
}

// A text of the library as its peers would write it: without blanks, separators, plus sign and zeros that fill a field,
// with a point.
std::string plain(std::u16string_view text, const Place& place) {
  const char separator = place.decimalPoint == ',' ? '.' : ',';
  std::string result;
  for (const char16_t unit : text) {
    const auto letter = static_cast<char>(unit);
    if (letter == place.decimalPoint) {
      result.push_back('.');
    } else if (letter != ' ' && letter != '+' && letter != separator) {
      result.push_back(letter);
    }
  }
  const size_t start = result.starts_with('-') ? 1 : 0;
  while (start + 1 < result.size() && result[start] == '0' && result[start + 1] != '.') result.erase(start, 1);
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
  void formatIn(size_t place, const char* op, const Values<Value>& values, const Format& format, How... how) {
    const Subject subject{"numbers", op, values.name, places[place].name};
    if (!runner_.wants(subject)) return;
    auto own = librarysFormat<Value>(locales_[place].get(), format);
    auto peers = peersFormat<Value>(how...);
    for (const Value value : values.items) {
      const std::string text = plain(own(value), places[place]);
      if (text != peers(value)) differs(subject, text, std::string(peers(value)));
    }
    run(subject, values.items.size(), candidate("veldnls", values.items, own),
        candidate("std::to_chars", values.items, peers));
  }
  template <class Value, class... How>
  void format(const char* op, const Values<Value>& values, const Format& format, How... how) {
    for (const size_t place : {english, german}) formatIn(place, op, values, format, how...);
  }

  // A field has fewer digits than the peer, or an exponent of another form: the text stands for nearly the same value.
  void field(const char* op, const Values<double>& values, const Format& format) {
    const Subject subject{"numbers", op, values.name, places[english].name};
    if (!runner_.wants(subject)) return;
    auto own = librarysFormat<double>(locales_[english].get(), format);
    auto peers = peersFormat<double>(std::chars_format::general);
    for (const double value : values.items) {
      const std::string text = plain(own(value), places[english]);
      double back = NAN;
      std::from_chars(text.data(), text.data() + text.size(), back);
      if (!(std::abs(back - value) <= 1e-2 + 1e-5 * std::abs(value))) differs(subject, text, std::string(peers(value)));
    }
    run(subject, values.items.size(), candidate("veldnls", values.items, own),
        candidate("std::to_chars, shortest", values.items, peers));
  }

  void parseDoubles(const Values<double>& values) {
    for (const size_t place : {english, german}) {
      const Subject subject{"numbers", "parseDouble", values.name, places[place].name};
      if (!runner_.wants(subject)) continue;
      parse(subject, values, writtenTexts(values, places[place].decimalPoint),
            [locale = locales_[place].get(), slot = locales_[place]->parseDouble](std::u16string_view text) {
              double value = NAN;
              int32_t consumed = 0;
              slot(locale, text.data(), static_cast<int32_t>(text.size()), &value, &consumed);
              return value;
            });
    }
  }

  void parseIntegers(const Values<int64_t>& values) {
    const Subject subject{"numbers", "parseInt64", values.name, places[english].name};
    if (!runner_.wants(subject)) return;
    parse(subject, values, writtenTexts(values, '.'),
          [locale = locales_[english].get(), slot = locales_[english]->parseInt64](std::u16string_view text) {
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
  numbers.format(fixed, prices, {0, 2, FMT_FIXED}, chars_format::fixed, 2);
  numbers.format(fixed, integers, {0, 0, FMT_FIXED}, chars_format::fixed, 0);
  numbers.format(fixed, any, {0, 6, FMT_FIXED}, chars_format::fixed, 6);
  numbers.format("formatDouble grouped", prices, {0, 2, FMT_FIXED | FMT_GROUP}, chars_format::fixed, 2);
  constexpr const char* general = "formatDouble general";
  for (const Values<double>* values : {&prices, &integers}) {
    numbers.format(general, *values, {0, 15, FMT_GENERAL}, chars_format::general, 15);
  }
  numbers.format(general, any, {0, 17, FMT_GENERAL}, chars_format::general, 17);
  for (const Values<double>* values : {&prices, &integers, &any}) {
    numbers.field("formatDouble field BEST 12", *values, {12, 0, FMT_BEST});
    numbers.field("formatDouble field 20.2", *values, {20, 2, FMT_FIELD_DECIMAL});
    numbers.field("formatDouble field E 20", *values, {20, 0, FMT_FIELD_EXPONENT});
    numbers.parseDoubles(*values);
  }
}

void runIntegers(Numbers& numbers) {
  for (const Values<int64_t>& values : {shortIntegers(), longIntegers(), anyIntegers()}) {
    numbers.format("formatInt64", values, {0, 0, 0});
    numbers.format("formatInt64 width 20", values, {20, 0, 0});
    numbers.format("formatInt64 grouped", values, {0, 0, FMT_GROUP});
    numbers.formatIn(english, "formatInt64 grouped width 20", values, {20, 0, FMT_GROUP});
    numbers.formatIn(hindi, "formatInt64 grouped 3;2", values, {0, 0, FMT_GROUP});
    numbers.formatIn(english, "formatInt64 default precision", values, {0, -1, 0});
    numbers.formatIn(english, "formatInt64 plus", values, {0, 0, FMT_PLUS});
    numbers.formatIn(english, "formatInt64 zeros width 20", values, {20, 0, FMT_ZERO});
    numbers.formatIn(english, "formatInt64 left width 20", values, {20, 0, FMT_LEFT});
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
