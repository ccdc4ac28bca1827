// veld format and veld parse: values as text of a locale, and back.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report.h"
#include "value_writer.h"

namespace veld {

struct ValueArguments {
  std::optional<std::string> locale = {};  // else the host's
  Kind kind = Kind::number;
  std::vector<std::string> texts = {};  // empty: the lines of standard input
  ReportFormat report = ReportFormat::text;
};

struct FormatArguments : ValueArguments {
  WriteOptions options = {};
};

struct ParseArguments : ValueArguments {
  DateChoice date = {};
  bool count = false;  // dates as a number of days, times as one of seconds
};

// Both print a line for each value, and return exitWhole, or exitLoss where a text is no value or a value has no text.
// They throw Failure for an unknown locale and for formats that can't be used.
int formatValues(QZNLS& nls, const FormatArguments& arguments);
int parseTexts(QZNLS& nls, const ParseArguments& arguments);

}  // namespace veld
