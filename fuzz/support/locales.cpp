#include "fuzz/support/locales.h"

#include <vector>

#include "locale/name_tables.h"
#include "veldnls/nls.h"

namespace fuzz {

namespace {

const char16_t* placeIn(Area& area, std::u16string_view text, At at) {
  const Room room = area.place(text.size() * sizeof(char16_t), at);
  // A read outside of the text gives another unit with every call.
  static uint8_t neighbour = 0;
  std::ranges::fill(Area::beside(room, at), neighbour += 0x35);
  auto* units = reinterpret_cast<char16_t*>(room.data());
  std::ranges::copy(text, units);
  return units;
}

std::vector<QZLocale*> makeAllLocales() {
  QZNLS* nls = host().nls;
  std::vector<QZLocale*> locales;
  for (const LocaleNameRow& row : veldnls::localeNameTable) {
    locales.push_back(nls->createLocale(nls, row.posixName, row.posixNameLength));
    require(locales.back() != nullptr, "a locale of every name");
  }
  return locales;
}

}  // namespace

QZLocale* chooseLocale(Input& input) {
  static const std::vector<QZLocale*> locales = makeAllLocales();
  return locales[input.byte() % locales.size()];
}

QZLocale* changeableLocale(const QZLocale* like) {
  static QZLocale* locale = host().nls->createLocale(host().nls, u"en_US", 5);
  *locale->record = *like->record;
  return locale;
}

std::u16string readUnits(Input& input, size_t longest, std::u16string_view others) {
  std::u16string units;
  while (!input.empty() && units.size() < longest) {
    const uint8_t byte = input.byte();
    if (byte == 0xFF) {
      units += static_cast<char16_t>(input.word());
    } else if (byte < 0x80 || others.empty()) {
      units += static_cast<char16_t>(byte);
    } else {
      units += others[byte % others.size()];
    }
  }
  return units;
}

NlsText60 counted(std::u16string_view text) {
  NlsText60 result{};
  result.count = static_cast<int32_t>(std::min(text.size(), std::size(result.text)));
  std::ranges::copy(text.substr(0, static_cast<size_t>(result.count)), result.text);
  return result;
}

std::u16string_view viewOf(const NlsText60& text) { return {text.text, static_cast<size_t>(text.count)}; }

const char16_t* placeText(std::u16string_view text, At at) {
  static Area area(8192);
  return placeIn(area, text, at);
}

const char16_t* placeSecondText(std::u16string_view text, At at) {
  static Area area(8192);
  return placeIn(area, text, at);
}

}  // namespace fuzz
