target_sources(gen_valid_bytes PRIVATE
  pages_page.cpp pages_row.cpp sets_singles.cpp sets_table.cpp valid_bytes_written.cpp)
file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/valid_bytes)
file(GLOB page_files RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/data/modules/qznlssb/pages/*.tsv)
file(GLOB written_files RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/*.tsv ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/sets/*.tsv
  ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/singles/*.tsv)
veldnls_generate(NAME valid_bytes GENERATOR gen_valid_bytes
  OUTPUTS valid_bytes/maps.inc valid_bytes/by_cei.inc
  INPUTS
    data/validation/sets.tsv data/validation/rows.tsv data/validation/without.tsv data/encodings/rows.tsv
    data/encodings/profiles.tsv data/modules/qznlssb/rows.tsv ${page_files} ${written_files})
