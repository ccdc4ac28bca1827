#include "value_commands.h"

#include "plain_values.h"
#include "text.h"
#include "value_report.h"

namespace veld {

namespace {

std::string localeName(QZNLS& nls, const std::string& name) { return name.empty() ? hostLocale(nls) : name; }

}  // namespace

int formatValues(QZNLS& nls, const FormatArguments& arguments) {
  Locale locale(nls, localeName(nls, arguments.locale));
  ValueWriter writer(nls, locale, arguments.kind, arguments.options);
  PlainValues plain(nls, arguments.kind);
  ValueReport report(nls, arguments.report);
  forEachText(nls, arguments.texts, [&](const Text& text) {
    const Read read = plain.read(text.units);
    ValueReport::Outcome outcome{.fault = read.fault, .warning = read.warning};
    if (!read.fault) {
      const Written written = writer.write(read.value);
      outcome.result = written.text;
      outcome.fault = written.fault;
    }
    report.add(text, outcome);
  });
  return report.result();
}

int parseTexts(QZNLS& nls, const ParseArguments& arguments) {
  Locale locale(nls, localeName(nls, arguments.locale));
  ValueReader reader(nls, locale, arguments.kind, arguments.date);
  PlainValues plain(nls, arguments.kind);
  ValueReport report(nls, arguments.report);
  forEachText(nls, arguments.texts, [&](const Text& text) {
    const Read read = reader.read(text.units);
    ValueReport::Outcome outcome{.fault = read.fault, .warning = read.warning};
    if (!read.fault) {
      const Written written = arguments.count ? plain.writeCount(read.value) : plain.write(read.value);
      outcome.result = written.text;
      outcome.fault = written.fault;
      if (isDateKind(arguments.kind) && !written.fault) outcome.count = toUtf8(nls, *plain.writeCount(read.value).text);
    }
    report.add(text, outcome);
  });
  return report.result();
}

}  // namespace veld
