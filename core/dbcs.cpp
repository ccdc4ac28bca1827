#include "core/dbcs.h"

#include "core/encoding_family.h"
#include "core/registry.h"
#include "core/session.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

// The types that the slots below tell apart.
constexpr int32_t typeIbm = 1;
constexpr int32_t typeFacom = 2;
constexpr int32_t typeHitac = 3;
constexpr int32_t typeXhitac = 4;
constexpr int32_t typeJis = 5;
constexpr int32_t typeSjis = 6;
constexpr int32_t typePcjis = 8;
constexpr int32_t typeJis7 = 18;
constexpr int32_t typeUcs2 = 19;
constexpr int32_t typeUtf8 = 20;

constexpr int32_t languageKatakana = 0x101;

// The katakana form of a type's Japanese encoding; types that aren't listed take IBM's.
struct KatakanaForm {
  int32_t type;
  CEI cei;
};

constexpr KatakanaForm katakanaForms[] = {
    {typeIbm, U_IBM930_CE},
    {typeFacom, U_FUJITSUKANA_CE},
    {typeHitac, U_HITACHIKANA_CE},
    {typeXhitac, U_HITQUOKANA_CE},
};

CEI katakanaForm(int32_t type) {
  for (const KatakanaForm& form : katakanaForms) {
    if (form.type == type) return form.cei;
  }
  return U_IBM930_CE;
}

bool isOtherUnicode(CEI cei) { return cei == U_B_UNICODE_CE || cei == U_B_UCS4_CE || cei == U_L_UCS4_CE; }

// What a type means when neither the caller nor the session names a language.
CEI resolveWithoutLanguage(int32_t type) {
  switch (type) {
    case typeJis7:
      return U_JIS7_CE;
    case typePcjis:
      return U_PCJIS_CE;
    case typeSjis:
      return U_SHIFTJIS_CE;
    case typeJis:
      return typeJis;
    default:
      return 0;
  }
}

CEI resolveInLanguage(int32_t language, int32_t type) {
  const auto code = static_cast<uint32_t>(language);
  const auto column = static_cast<int32_t>(code & 0xFF);
  if (column >= dbcsColumnCount || type < 0 || type >= dbcsTypeCount) return 0;
  const DbcsTypeRow& row = dbcsTypes[type];
  const bool variant = (code & 0xFF00) != 0 && (row.flags & dbcsKatakanaVariant) != 0;
  if (variant && column == dbcsColumnJapanese) return katakanaForm(type);
  if (variant && column == dbcsColumnKorean) return U_IBM933_CE;
  return row.cells[column] != 0 ? row.cells[column] : type;
}

struct DbcsName {
  int32_t language;
  int32_t type;
};

// Encodings whose name isn't found by the tables; language 0 for all others.
DbcsName describeWithoutTables(CEI cei) {
  if (cei == U_UTF8_CE) return {dbcsColumnUnknown, typeUtf8};
  if (cei == U_L_UNICODE_CE) return {dbcsColumnUnknown, typeUcs2};
  if (isOtherUnicode(cei) || isAliasCei(cei)) return {dbcsColumnUnknown, cei};
  for (const KatakanaForm& form : katakanaForms) {
    if (form.cei == cei) return {languageKatakana, form.type};
  }
  return {0, 0};
}

// The first cell that holds the encoding, by type and then by column.
DbcsName describeByCell(CEI cei) {
  for (int32_t type = 0; type < dbcsTypeCount; ++type) {
    for (int32_t column = dbcsColumnJapanese; column <= dbcsColumnTaiwanese; ++column) {
      if (dbcsTypes[type].cells[column] == cei) return {column, type};
    }
  }
  return {0, 0};
}

}  // namespace

CEI resolveDbcsEncoding(QZNLS* nls, int32_t language, int32_t type) {
  if (type == typeUcs2) return U_L_UNICODE_CE;
  if (type == typeUtf8 || type == U_L_UNICODE_CE || isOtherUnicode(type)) return type;
  if (type < 1) return sessionCei(nls);
  if (language == 0) language = sessionDbcsLanguage(nls);
  return language == 0 ? resolveWithoutLanguage(type) : resolveInLanguage(language, type);
}

NlsStatus describeDbcsEncoding(QZNLS* nls, CEI cei, int32_t* language, int32_t* type) {
  *language = 0;
  *type = 0;
  if (cei == 0) cei = sessionCei(nls);
  if (cei < 1 || cei >= NLS_CEI_COUNT) return 1;
  DbcsName name = describeWithoutTables(cei);
  if (name.language == 0) {
    const EncodingFamilyRow* family = encodingFamily(cei);
    name = family != nullptr ? DbcsName{family->language, family->type} : describeByCell(cei);
  }
  *language = name.language;
  *type = name.type;
  return 0;
}

}  // namespace veldnls
