target_sources(gen_locales PRIVATE locale_names.cpp locale_lists.cpp)

file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/locales)
veldnls_generate(
  NAME locales
  GENERATOR gen_locales
  OUTPUTS
    locales/names.inc locales/language_defaults.inc locales/language_codes.inc locales/windows_languages.inc
    locales/codesets.inc locales/encodings.inc locales/encoding_locales.inc locales/listed_numbers.inc
  INPUTS
    data/locale/names.tsv data/locale/language_defaults.tsv data/locale/language_codes.tsv
    data/locale/windows_languages.tsv data/locale/codesets.tsv data/locale/encodings.tsv)
