target_sources(gen_pages PRIVATE pages_facts.cpp pages_page.cpp pages_permutation.cpp pages_row.cpp)
file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/pages)
file(GLOB page_files RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/data/modules/qznlssb/pages/*.tsv)
veldnls_generate(NAME pages GENERATOR gen_pages
  OUTPUTS pages/tables.inc pages/to_by_cei.inc pages/from_by_cei.inc pages/i8_to_ebcdic.inc pages/ebcdic_to_i8.inc
  INPUTS data/modules/qznlssb/rows.tsv ${page_files} data/utf_ebcdic/permutation.tsv)
