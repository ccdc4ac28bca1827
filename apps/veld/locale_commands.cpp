#include "locale_commands.h"

#include <algorithm>
#include <map>

#include "failure.h"
#include "list_option.h"
#include "locales.h"
#include "veldnls/number_flags.h"

namespace veld {

namespace {

constexpr const char* localesNotes =
    R"(NAME is a POSIX name (de_DE, de-DE), a language (de, German), a language and country (German_Germany), or a number of the
library or of Windows (QUOID:27, WLCID:1031). Of a language the library knows which locale stands for it.)";

constexpr const char* formatNotes =
    R"(Each VALUE gets a line. Numbers, amounts and percents (1 is 100 %) have "." and no groups; "." and "." with a letter are
missing values. Whole numbers of hex and octal may have 0x in front. A date is 2011-03-02 or a number of days, a time
13:05:09 or a number of seconds, a datetime 2011-03-02T13:05:09 or a number of seconds, all from 1 January 1960. A VALUE
that begins with "-" and no digit stands behind "--".

Without --as and --precision a number has as many digits as bring it back, without --precision an amount and a percent
those of the locale's pattern. These kinds take no precision of 99, which the library reads as --as best. Conversions best,
field and field-exponent fill a field of --width, or of 12.

Items of --format: %d %e day, %m %o month, %b %B its names, %Y year, %a %A day of the week, %w its number, %H %I hour,
%M minute, %S second, %p half of the day, %% percent sign. A date has no items of a time.

Standard error gets the status of a VALUE that can't be formatted, and the character at which it shows,
the first where the value as a whole is at fault, as one out of range. A field that is too narrow has no such character.

Exit status: 0 all done; 1 some VALUE wasn't formatted, or not as asked for; 2 wrong usage.)";

constexpr const char* parseNotes =
    R"(Each TEXT gets a line with its value: numbers have "." and no groups, a date is 2011-03-02, a time 13:05:09, a datetime
2011-03-02T13:05:09. Whole numbers of hex come out in decimal. Text must follow the form, blanks around it aside: numbers
of a date have all their digits. A TEXT that begins with "-" and no digit stands behind "--".

Items of --format are those of "veld format" but for %a, which reads full names too; hours, minutes and half of the day
are read in dates too, and left.

A group separator in an integer takes the character behind it with it, which a warning tells; a number has no such trap.

Standard error gets the status of a TEXT that can't be read, the character at which it shows, and what should stand there;
of 30 February and its like that is the first character.

Exit status: 0 all read; 1 some TEXT wasn't; 2 wrong usage.)";

const std::map<std::string, Kind> kindsByName = {
    {"number", Kind::number}, {"integer", Kind::integer}, {"hex", Kind::hex},
    {"octal", Kind::octal},   {"money", Kind::money},     {"percent", Kind::percent},
    {"date", Kind::date},     {"time", Kind::time},       {"datetime", Kind::dateTime},
};

const std::map<std::string, Conversion> conversionsByName = {
    {"fixed", Conversion::fixed},
    {"general", Conversion::general},
    {"exponent", Conversion::exponent},
    {"best", Conversion::best},
    {"field", Conversion::field},
    {"field-exponent", Conversion::fieldExponent},
    {"integer-part", Conversion::integerPart},
    {"fraction-part", Conversion::fractionPart},
};

template <typename Target>
std::vector<std::string> wordsOf(const std::map<std::string, Target>& words) {
  std::vector<std::string> names;
  for (const auto& [name, value] : words) names.push_back(name);
  return names;
}

// A word of a fixed list, in capitals or not.
template <typename Target>
CLI::Option* addWord(CLI::App& command, const std::string& option, const std::map<std::string, Target>& words,
                     std::vector<std::string> names, Target& target, const std::string& help) {
  const auto set = [&words, &target](const std::string& word) { target = words.at(word); };
  return command.add_option_function<std::string>(option, set, help)
      ->transform(CLI::IsMember(std::move(names), CLI::ignore_case));
}

template <typename Target>
CLI::Option* addNumber(CLI::App& command, const std::string& option, std::optional<Target>& target, Target least,
                       Target greatest, const std::string& help) {
  return command
      .add_option_function<Target>(
          option, [&target](const Target& value) { target = value; }, help)
      ->check(CLI::Range(least, greatest))
      ->type_name("N");
}

// A text that may be empty, which isn't the same as none.
CLI::Option* addText(CLI::App& command, const std::string& option, std::optional<std::string>& target,
                     const std::string& help, const std::string& typeName) {
  return command
      .add_option_function<std::string>(
          option, [&target](const std::string& text) { target = text; }, help)
      ->type_name(typeName);
}

void addCommon(CLI::App& command, ValueArguments& arguments, std::vector<std::string> kinds, const char* textName) {
  addText(command, "-l,--locale", arguments.locale, "Any name of a locale; else the host's", "NAME");
  const auto setReport = [&arguments](const std::string& word) {
    arguments.report = word == "json" ? ReportFormat::json : ReportFormat::text;
  };
  command.add_option_function<std::string>("--report", setReport, "How to print each value")
      ->transform(CLI::IsMember({"text", "json"}, CLI::ignore_case))
      ->default_str("text");
  addWord(command, "kind", kindsByName, std::move(kinds), arguments.kind, "What the values are")
      ->required()
      ->type_name("KIND");
  takeAsGiven(command.add_option("values", arguments.texts, "The values; else the lines of standard input"))
      ->type_name(textName);
  command.fallthrough();
}

const std::vector<Kind> dateKinds = {Kind::date, Kind::time, Kind::dateTime};
const std::vector<Kind> numberKinds = {Kind::number, Kind::integer, Kind::hex, Kind::octal, Kind::money, Kind::percent};

}  // namespace

void LocaleCommands::limit(const CLI::Option* option, std::vector<Kind> kinds) {
  limits_.push_back({option, std::move(kinds)});
}

void LocaleCommands::checkLimits(Kind kind) const {
  for (const Limited& limited : limits_) {
    if (limited.option->count() == 0) continue;
    if (std::find(limited.kinds.begin(), limited.kinds.end(), kind) != limited.kinds.end()) continue;
    std::string kinds;
    for (const auto& [name, listed] : kindsByName) {
      if (std::find(limited.kinds.begin(), limited.kinds.end(), listed) != limited.kinds.end()) kinds += " " + name;
    }
    throw Failure(limited.option->get_name() + " isn't for this kind of value, but for:" + kinds);
  }
}

void LocaleCommands::addLocales(CLI::App& app) {
  locales_ = app.add_subcommand("locales", "Show the table of locales, or all about one locale, with examples");
  addText(*locales_, "name", name_, "Any name of a locale", "NAME");
  locales_->add_flag("--json", json_, "Print JSON");
  locales_->footer(localesNotes);
  locales_->fallthrough();
}

void LocaleCommands::addFlags(CLI::App& command) {
  WriteOptions& options = formatArguments_.options;
  const auto flag = [&](const char* name, uint32_t bit, const char* help, std::vector<Kind> kinds) {
    limit(command.add_flag_callback(
              name, [&options, bit] { options.flags |= bit; }, help),
          std::move(kinds));
  };
  flag("--plus", FMT_PLUS, "Show the sign of positive numbers too", {Kind::number, Kind::integer});
  flag("--space", FMT_SPACE, "A blank in the place of a plus sign", {Kind::number, Kind::integer});
  flag("--zero", FMT_ZERO, "Fill the width with zeros", {Kind::number, Kind::integer, Kind::hex, Kind::octal});
  flag("--left", FMT_LEFT, "Fill the width on the right", {Kind::number, Kind::integer, Kind::hex, Kind::octal});
  flag("--point", FMT_POINT, "A decimal point even without a fraction", {Kind::number});
  flag("--keep-zeros", FMT_KEEP_ZEROS, "Keep zeros at the end of --as general", {Kind::number});
  limit(command.add_flag("--upper", options.upper, "Letters of exponents and of hexadecimal digits in capitals"),
        {Kind::number, Kind::hex});
  limit(command.add_flag("--prefix", options.prefix, "0x in front; in octal a 0, where the width leaves room"),
        {Kind::hex, Kind::octal});
  limit(command.add_flag("--parentheses", options.parentheses, "Negative percents in parentheses"), {Kind::percent});
  limit(command.add_flag("--no-fraction", options.noFraction, "Cut the fraction of an amount"), {Kind::money});
}

void LocaleCommands::addFormat(CLI::App& app) {
  format_ = app.add_subcommand("format", "Show values as a locale writes them");
  WriteOptions& options = formatArguments_.options;
  addCommon(*format_, formatArguments_, wordsOf(kindsByName), "VALUE");
  limit(addNumber(*format_, "--width", options.width, -greatestWidth, greatestWidth,
                  "Least characters; a negative width fills on the right"),
        numberKinds);
  limit(addNumber(*format_, "--precision", options.precision, 0, greatestPrecision,
                  "Digits behind the decimal point, of --as general all, of whole numbers at least"),
        numberKinds);
  limit(addWord(*format_, "--as", conversionsByName, wordsOf(conversionsByName), options.conversion,
                "How digits are shown")
            ->type_name("CONVERSION"),
        {Kind::number});
  CLI::Option* group = format_->add_flag_callback(
      "--group", [&options] { options.group = true; }, "Digits in groups, as amounts and numbers have them anyway");
  CLI::Option* noGroup = format_->add_flag_callback(
      "--no-group", [&options] { options.group = false; }, "No groups of digits");
  group->excludes(noGroup);
  limit(group, {Kind::number, Kind::integer});
  limit(noGroup, {Kind::number, Kind::integer});
  addFlags(*format_);
  limit(format_
            ->add_option("--form", options.date.form,
                         "Of dates and datetimes: short, medium, long, full; of times: 12, 24")
            ->type_name("FORM"),
        dateKinds);
  limit(addText(*format_, "--format", options.date.format, "A format of your own, of characters and the items below",
                "FORMAT"),
        dateKinds);
  format_->footer(formatNotes);
}

void LocaleCommands::addParse(CLI::App& app) {
  parse_ = app.add_subcommand("parse", "Read values as a locale writes them");
  std::vector<std::string> kinds = wordsOf(kindsByName);
  kinds.erase(std::remove(kinds.begin(), kinds.end(), "octal"), kinds.end());
  addCommon(*parse_, parseArguments_, std::move(kinds), "TEXT");
  DateChoice& date = parseArguments_.date;
  limit(parse_->add_option("--form", date.form, "Of dates and datetimes: short, medium, long, full; of times: 12, 24")
            ->type_name("FORM"),
        dateKinds);
  limit(addText(*parse_, "--format", date.format, "A format of your own, of characters and items", "FORMAT"),
        dateKinds);
  limit(parse_->add_flag("--count", parseArguments_.count,
                         "Dates as a number of days, times and datetimes as one of seconds"),
        dateKinds);
  parse_->footer(parseNotes);
}

void LocaleCommands::addTo(CLI::App& app) {
  addLocales(app);
  addFormat(app);
  addParse(app);
}

bool LocaleCommands::run(QZNLS& nls, int& result) const {
  if (locales_->parsed()) {
    printLocales(nls, name_, json_ ? Format::json : Format::text);
    result = exitWhole;
  } else if (format_->parsed()) {
    checkLimits(formatArguments_.kind);
    result = formatValues(nls, formatArguments_);
  } else if (parse_->parsed()) {
    checkLimits(parseArguments_.kind);
    result = parseTexts(nls, parseArguments_);
  } else {
    return false;
  }
  return true;
}

}  // namespace veld
