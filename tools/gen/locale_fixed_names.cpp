// Names and languages that callers rely on, told a second time, so that no edit of the tables passes unseen.
#include "locales.h"

namespace gen {

namespace {

constexpr char kNameRows[] =
    "af_ZA|ar_AE|ar_BH|ar_DZ|ar_EG|ar_IN|ar_IQ|ar_JO|ar_KW|ar_LB|ar_LY|ar_MA|ar_OM|ar_QA|ar_SA|ar_SD|ar_SY|ar_TN|"
    "ar_YE|be_BY|bg_BG|bn_IN|bs_BA|ca_ES|cs_CZ|da_DK|de_AT|de_CH|de_DE|de_LI|de_LU|el_GR|en_AU|en_BE|en_BW|en_CA|"
    "en_CB|en_GB|en_HK|en_IE|en_IN|en_JM|en_NZ|en_PH|en_SG|en_US|en_ZA|en_ZW|es_AR|es_BO|es_CL|es_CO|es_CR|es_DO|"
    "es_EC|es_ES|es_GT|es_HN|es_MX|es_NI|es_PA|es_PE|es_PR|es_PY|es_SV|es_US|es_UY|es_VE|et_EE|fa_IN|fa_IR|fi_FI|"
    "fo_FO|fr_BE|fr_CA|fr_CH|fr_FR|fr_LU|gv_GB|he_IL|hi_IN|hr_BA|hr_HR|hu_HU|id_ID|is_IS|it_CH|it_IT|ja_JP|kl_GL|"
    "ko_KR|kw_GB|lt_LT|lv_LV|mk_MK|mr_IN|ms_MY|mt_MT|nb_NO|nl_BE|nl_NL|nn_NO|no_NO|pl_PL|pl_XX|pt_BR|pt_PT|ro_RO|"
    "ru_RU|ru_UA|sh_BA|sh_ME|sh_RS|sk_SK|sl_SI|sq_AL|sr_BA|sr_ME|sr_RS|sr_YU|sv_SE|ta_IN|te_IN|th_TH|tr_TR|uk_UA|"
    "vi_VN|zh_CN|zh_HK|zh_MO|zh_SG|zh_TW";

constexpr char kDefaultRows[] =
    "af_ZA Afrikaans|ar_AE Arabic|be_BY Belarusian|be_BY Byelorussian|bg_BG Bulgarian|bn_IN Bengali|bs_BA Bosnian|"
    "ca_ES Catalan|cs_CZ Czech|da_DK Danish|de_DE German|el_GR Greek|en_US English|es_ES Spanish|et_EE Estonian|"
    "fa_IR Persian|fi_FI Finnish|fo_FO Faroese|fr_FR French|gv_GB ManxGaelic|he_IL Hebrew|hi_IN Hindi|hr_HR Croatian|"
    "hu_HU Hungarian|id_ID Indonesian|is_IS Icelandic|it_IT Italian|iw_IL Hebrew|ja_JP Japanese|kl_GL Greenlandic|"
    "ko_KR Korean|kw_GB Cornish|lt_LT Lithuanian|lv_LV Latvian|mk_MK Macedonian|mr_IN Marathi|ms_MY Malay|"
    "mt_MT Maltese|nb_NO NorwegianBokmal|nl_NL Dutch|nn_NO NorwegianNynorsk|no_NO Norwegian|pl_PL Polish|"
    "pt_PT Portuguese|ro_RO Romanian|ru_RU Russian|sh_RS SerbianLatin|sh_RS SerboCroatian|sk_SK Slovak|"
    "sk_SK Slovakian|sl_SI Slovenian|sq_AL Albanian|sr_RS Serbian|sv_SE Swedish|ta_IN Tamil|te_IN Telugu|th_TH Thai|"
    "tr_TR Turkish|uk_UA Ukrainian|vi_VN Vietnamese|zh_CN Chinese";

constexpr char kCodeRows[] =
    "aa Afar|ab Abkhazian|ae Avestan|af Afrikaans|ak Akan|am Amharic|an Aragonese|ar Arabic|as Assamese|av Avaric|"
    "ay Aymara|az Azerbaijani|ba Bashkir|be Belarusian|bg Bulgarian|bh Bihari|bi Bislama|bm Bambara|bn Bengali|"
    "bo Tibetan|br Breton|bs Bosnian|ca Catalan|ce Chechen|ch Chamorro|co Corsican|cr Cree|cs Czech|cu Church Slavic|"
    "cu Church Slavonic|cu Old Bulgarian|cu Old Church Slavonic|cu Old Slavonic|cv Chuvash|cy Welsh|da Danish|"
    "de German|dv Divehi|dz Dzongkha|ee Ewe|el Greek|en English|eo Esperanto|es Castilian|es Spanish|et Estonian|"
    "eu Basque|fa Persian|ff Fulah|fi Finnish|fj Fijian|fo Faroese|fr French|fy Frisian|ga Irish|gd Gaelic|"
    "gd Scottish Gaelic|gl Gallegan|gn Guarani|gu Gujarati|gv Manx|ha Hausa|he Hebrew|hi Hindi|ho Hiri Motu|"
    "hr Croatian|hu Hungarian|hy Armenian|hz Herero|ia Interlingua|id Indonesian|ie Interlingue|ig Igbo|"
    "ii Sichuan Yi|ik Inupiaq|io Ido|is Icelandic|it Italian|iu Inuktitut|ja Japanese|jv Javanese|ka Georgian|"
    "kg Kongo|ki Gikuyu|ki Kikuyu|kj Kuanyama|kj Kwanyama, Kuanyama|kk Kazakh|kl Greenlandic|kl Kalaallisut|km Khmer|"
    "kn Kannada|ko Korean|kr Kanuri|ks Kashmiri|ku Kurdish|kv Komi|kw Cornish|ky Kirghiz|la Latin|lb Letzeburgesch|"
    "lb Luxembourgish|lg Ganda|li Limburgan|li Limburger|li Limburgish|ln Lingala|lo Lao|lt Lithuanian|"
    "lu Luba-Katanga|lv Latvian|mg Malagasy|mh Marshallese|mi Maori|mk Macedonian|ml Malayalam|mn Mongolian|"
    "mo Moldavian|mr Marathi|ms Malay|mt Maltese|my Burmese|na Nauru|nb Bokmal, Norwegian|nb Norwegian Bokmal|"
    "nd Ndebele, North|nd North Ndebele|ne Nepali|ng Ndonga|nl Dutch|nl Flemish|nn Norwegian Nynorsk|"
    "nn Nynorsk, Norwegian|no Norwegian|nr Ndebele, South|nr South Ndebele|nv Navaho, Navajo|nv Navajo|ny Chewa|"
    "ny Chichewa|ny Nyanja|oc Occitan (post 1500)|oc Provencal|oj Ojibwa|om Oromo|or Oriya|os Ossetian|os Ossetic|"
    "pa Panjabi|pi Pali|pl Polish|ps Pushto|pt Portuguese|qu Quechua|rm Raeto-Romance|rn Rundi|ro Romanian|"
    "ru Russian|rw Kinyarwanda|sa Sanskrit|sc Sardinian|sd Sindhi|se Northern Sami|sg Sango|sh SerbianLatin|"
    "si Sinhalese|sk Slovak|sl Slovenian|sm Samoan|sn Shona|so Somali|sq Albanian|sr Serbian|ss Swati|"
    "st Sotho, Southern|su Sundanese|sv Swedish|sw Swahili|ta Tamil|te Telugu|tg Tajik|th Thai|ti Tigrinya|"
    "tk Turkmen|tl Tagalog|tn Tswana|to Tonga|tr Turkish|ts Tsonga|tt Tatar|tw Twi|ty Tahitian|ug Uighur|"
    "uk Ukrainian|ur Urdu|uz Uzbek|ve Venda|vi Vietnamese|vo Volapuk|wa Walloon|wo Wolof|xh Xhosa|yi Yiddish|"
    "yo Yoruba|za Chuang|za Zhuang|zh Chinese|zu Zulu";

constexpr char kWindowsRows[] =
    "0x00 Neutral|0x01 Arabic|0x02 Bulgarian|0x03 Catalan|0x04 Chinese|0x05 Czech|0x06 Danish|0x07 German|0x08 Greek|"
    "0x09 English|0x0A Spanish|0x0B Finnish|0x0C French|0x0D Hebrew|0x0E Hungarian|0x0F Icelandic|0x10 Italian|"
    "0x11 Japanese|0x12 Korean|0x13 Dutch|0x14 Norwegian|0x15 Polish|0x16 Portuguese|0x17 Roamansh|0x18 Romanian|"
    "0x19 Russian|0x1A Bosnian|0x1A Croatian|0x1A Serbian|0x1A SerbianLatin|0x1B Slovak|0x1C Albanian|0x1D Swedish|"
    "0x1E Thai|0x1F Turkish|0x20 Urdu|0x21 Indonesian|0x22 Ukrainian|0x23 Belarusian|0x24 Slovenian|0x25 Estonian|"
    "0x26 Latvian|0x27 Lithuanian|0x28 Tajik|0x29 Farsi|0x2A Vietnamese|0x2B Armenian|0x2C Azeri|0x2D Basque|"
    "0x2E Sorbian|0x2F FYRO|0x32 Tswana|0x34 Xhosa|0x35 Zulu|0x36 Afrikaans|0x37 Georgian|0x38 Faroese|0x39 Hindi|"
    "0x3A Maltese|0x3B Sami|0x3C Irish|0x3E Malay|0x3F Kazak|0x40 Kyrgyz|0x41 Swahili|0x42 Turkmen|0x43 Uzbek|"
    "0x44 Tatar|0x45 Bengali|0x46 Punjabi|0x47 Gujarati|0x48 Oriya|0x49 Tamil|0x4A Telugu|0x4B Kannada|"
    "0x4C Malayalam|0x4D Assamese|0x4E Marathi|0x4F Sanskrit|0x50 Mongolian|0x51 Tibetan|0x52 Welsh|0x53 Khmer|"
    "0x54 Lao|0x56 Galician|0x57 Konkani|0x5A Syriac|0x5B Sinhala|0x5D Inuktitut|0x5E Amharic|0x5F Tamazight|"
    "0x61 Nepali|0x62 Frisian|0x63 Pashto|0x64 Filipino|0x65 Divehi|0x68 Hausa|0x6A Yoruba|0x6B Quechua|0x6C Sotho|"
    "0x6D Bashkir|0x6E Luxembourgish|0x6F Greenlandic|0x70 Igbo|0x78 Yi|0x7A Mapudungun|0x7C Mohawk|0x7E Breton|"
    "0x80 Uighur|0x81 Maori|0x82 Occitan|0x83 Corsican|0x84 Alsatian|0x85 Yakut|0x86 K'iche |0x87 Kinyarwanda|"
    "0x88 Wolof|0x8C Dari";

// Rows whose identifiers are fixed.
struct FixedIds {
  const char* posixName;
  size_t localeId;
  uint32_t windowsLcid;
};
constexpr FixedIds kFixedIds[] = {
    {"af_ZA", 0, 0x0436},  {"sq_AL", 1, 0x041C},  {"ar_DZ", 2, 0x1401},  {"ar_BH", 3, 0x3C01},  {"ar_AE", 18, 0x3801},
    {"zh_TW", 29, 0x0404}, {"en_GB", 50, 0x0809}, {"en_US", 51, 0x0409}, {"he_IL", 68, 0x040D}, {"pl_XX", 90, 0x8015},
};

// Rows whose countries are fixed too; those of all others were named here.
struct FixedLongName {
  const char* posixName;
  const char* longName;
};
constexpr FixedLongName kFixedLongNames[] = {
    {"af_ZA", "Afrikaans_SouthAfrica"}, {"de_DE", "German_Germany"}, {"en_US", "English_UnitedStates"}};

// `text` gives what a row must have in common with the fixed one.
template <class Row, class Text>
void requireFixed(const char* fixed, const std::vector<Row>& rows, Text text) {
  const std::vector<std::string> expected = split(fixed, '|');
  for (size_t i = 0; i < rows.size(); ++i) {
    require(text(rows[i]) == expected.at(i), rows[i].place, "the row is fixed as \"" + expected[i] + "\"");
  }
}

}  // namespace

void requireFixedNames(const std::vector<LocaleName>& names) {
  requireFixed(kNameRows, names, [](const LocaleName& row) { return row.posixName; });
  for (const LocaleName& row : names) {
    for (const FixedIds& fixed : kFixedIds) {
      require(
          row.posixName != fixed.posixName || (row.localeId == fixed.localeId && row.windowsLcid == fixed.windowsLcid),
          row.place,
          row.posixName + " has locale id " + std::to_string(fixed.localeId) + " and Windows identifier " +
              hex(fixed.windowsLcid, 4));
    }
    for (const FixedLongName& fixed : kFixedLongNames) {
      require(row.posixName != fixed.posixName || row.longName() == fixed.longName, row.place,
              row.posixName + " has the long name " + fixed.longName);
    }
  }
}

void requireFixedDefaults(const std::vector<LocaleName>& defaults) {
  requireFixed(kDefaultRows, defaults, [](const LocaleName& row) { return row.posixName + " " + row.languageName; });
}

void requireFixedLanguageCodes(const std::vector<LanguageName>& rows) {
  requireFixed(kCodeRows, rows, [](const LanguageName& row) { return row.code + " " + row.name; });
}

void requireFixedWindowsLanguages(const std::vector<LanguageName>& rows) {
  requireFixed(kWindowsRows, rows, [](const LanguageName& row) { return hex(row.number, 2) + " " + row.name; });
}

}  // namespace gen
