target_sources(gen_sets PRIVATE
  pages_page.cpp sets_emit.cpp sets_facts.cpp sets_gb18030.cpp sets_index.cpp sets_singles.cpp sets_table.cpp)
file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/sets)
file(GLOB set_files RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/*.tsv ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/sets/*.tsv
  ${CMAKE_SOURCE_DIR}/data/modules/qznlsmb/singles/*.tsv)
veldnls_generate(NAME sets GENERATOR gen_sets
  OUTPUTS
    sets/tables.inc sets/to_sets.inc sets/from_sets.inc sets/singles.inc sets/identity.inc
    sets/ascii_passthrough.inc sets/ascii_to_ebcdic.inc sets/ebcdic_to_ascii.inc sets/euro_bytes.inc
    sets/euro_codes.inc sets/gb18030.inc sets/gb18030_from.inc sets/gb18030_to.inc
  INPUTS
    ${set_files} data/modules/qznlsgb/gb18030.tsv data/modules/qznlssb/pages/ebcdic1047.tsv
    data/encodings/profiles.tsv data/encodings/rows.tsv)
