#include "locale_sections.h"

#include <array>

#include "failure.h"
#include "status_names.h"
#include "text.h"

namespace veld {

namespace {

// One of the record's sections, by its number.
template <typename Section>
const Section& sectionOf(Locale& locale, int32_t number) {
  const void* data = nullptr;
  const NlsStatus status = locale.slots()->getLocaleSection(locale.slots(), number, &data);
  if (status != 0) {
    throw Failure("the locale has no section " + std::to_string(number) + ": " + statusText(status) +
                  "; is this the module of this version?");
  }
  return *static_cast<const Section*>(data);
}

class Describer {
 public:
  explicit Describer(QZNLS& nls) : nls_(nls) {}

  std::string text(const NlsText60& value) const { return toUtf8(nls_, viewOf(value)); }
  std::string unit(char16_t value) const { return toUtf8(nls_, {&value, 1}); }

  template <size_t count>
  Json list(const NlsText60 (&values)[count]) const {
    Json result = Json::array();
    for (const NlsText60& value : values) result.push_back(text(value));
    return result;
  }

  Json dateTime(const LocaleDateTime& section) const {
    return {{"dayNames", list(section.dayNames)},
            {"dayAbbreviations", list(section.dayAbbreviations)},
            {"monthNames", list(section.monthNames)},
            {"monthAbbreviations", list(section.monthAbbreviations)},
            {"dateFormatShort", text(section.dateFormatShort)},
            {"dateFormatMedium", text(section.dateFormatMedium)},
            {"dateFormatLong", text(section.dateFormatLong)},
            {"dateTimeFormat", text(section.dateTimeFormat)},
            {"timeFormat24", text(section.timeFormat24)},
            {"timeFormat12", text(section.timeFormat12)},
            {"amText", text(section.amText)},
            {"pmText", text(section.pmText)},
            {"dateSeparator", unit(section.dateSeparator)},
            {"timeSeparator", unit(section.timeSeparator)}};
  }

  Json number(const LocaleNumber& section) const {
    return {{"numberPattern", text(section.numberPattern)},
            {"numberGrouping", text(section.numberGrouping)},
            {"decimalPoint", unit(section.decimalPoint)},
            {"groupSeparator", unit(section.groupSeparator)}};
  }

  Json currency(const LocaleCurrency& section) const {
    return {{"currencyPattern", text(section.currencyPattern)},
            {"currencyPatternInternational", text(section.currencyPatternInternational)},
            {"currencyGrouping", text(section.currencyGrouping)},
            {"currencySymbol", text(section.currencySymbol)},
            {"currencyCode", text(section.currencyCode)},
            {"currencyDecimalPoint", unit(section.currencyDecimalPoint)},
            {"currencyGroupSeparator", unit(section.currencyGroupSeparator)},
            {"currencyDigits", section.currencyDigits},
            {"currencyDigitsInternational", section.currencyDigitsInternational}};
  }

  Json percent(const LocalePercent& section) const {
    return {{"percentPattern", text(section.percentPattern)}, {"percentSign", unit(section.percentSign)}};
  }

  Json identity(const LocaleIdentity& section) const {
    return {{"posixName", text(section.posixName)},
            {"languageCode", toUtf8(nls_, {section.languageCode, 2})},
            {"countryCode", toUtf8(nls_, {section.countryCode, 2})},
            {"languageName", text(section.languageName)},
            {"countryName", text(section.countryName)},
            {"paperName", text(section.paperName)},
            {"paperHeight", section.paperHeight},
            {"paperWidth", section.paperWidth}};
  }

 private:
  QZNLS& nls_;
};

Json items(QZNLS& nls, const Locale& locale) {
  Json list = Json::array();
  for (size_t i = 0; i < NLS_LOCALE_ITEM_COUNT; ++i) list.push_back(toUtf8(nls, locale.item(i)));
  return list;
}

// A section that nothing is told of.
Json reserved(size_t bytes) { return {{"reservedBytes", bytes}}; }

}  // namespace

Json localeSections(QZNLS& nls, Locale& locale) {
  const Describer describe(nls);
  const auto& whole = sectionOf<LocaleRecord>(locale, NLS_LOCALE_SECTION_RECORD);
  return {
      {"record", {{"requestedName", describe.text(whole.requestedName)}, {"bytes", sizeof whole}}},
      {"reserved1", reserved(sizeof whole.reserved1)},
      {"reserved2", reserved(sizeof whole.reserved2)},
      {"currency", describe.currency(sectionOf<LocaleCurrency>(locale, NLS_LOCALE_SECTION_CURRENCY))},
      {"number", describe.number(sectionOf<LocaleNumber>(locale, NLS_LOCALE_SECTION_NUMBER))},
      {"dateTime", describe.dateTime(sectionOf<LocaleDateTime>(locale, NLS_LOCALE_SECTION_DATE_TIME))},
      {"percent", describe.percent(sectionOf<LocalePercent>(locale, NLS_LOCALE_SECTION_PERCENT))},
      {"measurement", {{"measurement", sectionOf<int32_t>(locale, NLS_LOCALE_SECTION_MEASUREMENT)}}},
      {"identity", describe.identity(sectionOf<LocaleIdentity>(locale, NLS_LOCALE_SECTION_IDENTITY))},
      {"items", items(nls, locale)},
  };
}

}  // namespace veld
