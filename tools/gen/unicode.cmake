file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/unicode)
veldnls_generate(NAME unicode GENERATOR gen_unicode
  OUTPUTS unicode/character_records.inc unicode/case_tables.inc unicode/class_tables.inc
  INPUTS data/unicode/character_records.tsv data/unicode/case_pairs.tsv data/unicode/class_ranges.tsv)
