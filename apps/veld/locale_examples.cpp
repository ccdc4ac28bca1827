#include "locale_examples.h"

#include "plain_values.h"
#include "status_names.h"
#include "text.h"

namespace veld {

namespace {

struct Example {
  const char* kind;
  Kind number;
  const char* value;
  const char* form;
};

constexpr Example examples[] = {
    {"number", Kind::number, "1234567.891", ""},
    {"number", Kind::number, "-0.5", ""},
    {"money", Kind::money, "1234.5", ""},
    {"money", Kind::money, "-1234.5", ""},
    {"percent", Kind::percent, "0.256", ""},
    {"date", Kind::date, "2011-03-02", "short"},
    {"date", Kind::date, "2011-03-02", "medium"},
    {"date", Kind::date, "2011-03-02", "long"},
    {"date", Kind::date, "2011-03-02", "full"},
    {"time", Kind::time, "13:05:09", "12"},
    {"time", Kind::time, "13:05:09", "24"},
    {"datetime", Kind::dateTime, "2011-03-02T13:05:09", ""},
    {"datetime", Kind::dateTime, "2011-03-02T13:05:09", "full"},
};

std::string formatted(QZNLS& nls, Locale& locale, const Example& example) {
  WriteOptions options;
  options.date.form = example.form;
  ValueWriter writer(nls, locale, example.number, options);
  const Read read = PlainValues(nls, example.number).read(toUtf16(nls, example.value));
  const Written written = writer.write(read.value);
  return written.text ? toUtf8(nls, *written.text) : statusText(written.fault->status);
}

}  // namespace

Json localeExamples(QZNLS& nls, const std::string& name) {
  Json list = Json::array();
  for (const Example& example : examples) {
    // Forms without a style take the place of another in the record.
    Locale locale(nls, name);
    Json row{{"kind", example.kind}, {"value", example.value}};
    if (*example.form != '\0') row["form"] = example.form;
    row["text"] = formatted(nls, locale, example);
    list.push_back(row);
  }
  return list;
}

}  // namespace veld
