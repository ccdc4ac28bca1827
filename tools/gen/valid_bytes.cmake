target_sources(gen_valid_bytes PRIVATE pages_page.cpp pages_row.cpp)
file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/valid_bytes)
file(GLOB page_files RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/data/modules/qznlssb/pages/*.tsv)
veldnls_generate(NAME valid_bytes GENERATOR gen_valid_bytes
  OUTPUTS valid_bytes/maps.inc valid_bytes/by_cei.inc
  INPUTS
    data/validation/sets.tsv data/validation/rows.tsv data/validation/without.tsv data/encodings/rows.tsv
    data/modules/qznlssb/rows.tsv ${page_files})
