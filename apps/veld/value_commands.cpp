#include "value_commands.h"

#include "plain_values.h"
#include "text.h"
#include "value_report.h"
#include "veldnls/status.h"

namespace veld {

namespace {

std::string localeName(QZNLS& nls, const std::optional<std::string>& name) { return name ? *name : hostLocale(nls); }

// A fault without a place lies in the value as a whole, if not in the field that it was to fill.
Fault placed(Fault fault, std::u16string_view text) {
  const bool isOfField = fault.status == nlsFieldTooNarrow || fault.status == nlsDigitsLost;
  if (!fault.place && !isOfField) fault.place = skipBlanks(text, 0);
  return fault;
}

// Reports every text: `read` takes it for a value, and `write` makes a text of that; it may add to the outcome.
template <class ReadText, class WriteValue>
int reportTexts(QZNLS& nls, const ValueArguments& arguments, ReadText read, WriteValue write) {
  ValueReport report(nls, arguments.report);
  forEachText(nls, arguments.texts, [&](const Text& text) {
    const Read taken = read(text.units);
    ValueReport::Outcome outcome{.fault = taken.fault, .warning = taken.warning};
    if (!taken.fault) {
      const Written written = write(taken.value, outcome);
      outcome.result = written.text;
      outcome.fault = written.fault;
    }
    if (outcome.fault) outcome.fault = placed(*outcome.fault, text.units);
    report.add(text, outcome);
  });
  return report.result();
}

}  // namespace

int formatValues(QZNLS& nls, const FormatArguments& arguments) {
  Locale locale(nls, localeName(nls, arguments.locale));
  ValueWriter writer(nls, locale, arguments.kind, arguments.options);
  PlainValues plain(nls, arguments.kind);
  return reportTexts(
      nls, arguments, [&](std::u16string_view text) { return plain.read(text); },
      [&](const Value& value, ValueReport::Outcome&) { return writer.write(value); });
}

int parseTexts(QZNLS& nls, const ParseArguments& arguments) {
  Locale locale(nls, localeName(nls, arguments.locale));
  ValueReader reader(nls, locale, arguments.kind, arguments.date);
  PlainValues plain(nls, arguments.kind);
  const auto write = [&](const Value& value, ValueReport::Outcome& outcome) {
    const Written written = arguments.count ? plain.writeCount(value) : plain.write(value);
    if (isDateKind(arguments.kind) && !written.fault) outcome.count = toUtf8(nls, *plain.writeCount(value).text);
    return written;
  };
  return reportTexts(
      nls, arguments, [&](std::u16string_view text) { return reader.read(text); }, write);
}

}  // namespace veld
