target_sources(gen_locales PRIVATE
  locale_names.cpp locale_fixed_names.cpp locale_lists.cpp locale_facts.cpp locale_record.cpp locale_items.cpp
  locale_case.cpp locale_checks.cpp locale_fixed.cpp locale_emit.cpp locale_codesets.cpp encodings_rows.cpp
  encodings_keys.cpp)

file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/locales)
veldnls_generate(
  NAME locales
  GENERATOR gen_locales
  OUTPUTS
    locales/names.inc locales/language_defaults.inc locales/language_codes.inc locales/windows_languages.inc
    locales/codesets.inc locales/encodings.inc locales/encoding_locales.inc locales/listed_numbers.inc
    locales/record_rows.inc locales/record_texts.inc locales/record_characters.inc
    locales/item_rows.inc locales/item_texts.inc locales/item_characters.inc
  INPUTS
    data/locale/names.tsv data/locale/language_defaults.tsv data/locale/language_codes.tsv
    data/locale/windows_languages.tsv data/locale/codesets.tsv data/locale/encodings.tsv
    data/locale/rows.tsv data/locale/overrides.tsv data/unicode/case_pairs.tsv
    data/encodings/rows.tsv data/encodings/length-exceptions.tsv data/encodings/keys-extra.tsv
    data/encodings/keys-shared.tsv data/encodings/keys-groups.tsv data/encodings/keys-left-out.txt)
