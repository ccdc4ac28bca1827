file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/encodings)
target_sources(gen_encodings PRIVATE
  encodings_emit.cpp encodings_fixed.cpp encodings_keys.cpp encodings_profiles.cpp encodings_relations.cpp
  encodings_rows.cpp encodings_trie.cpp)

veldnls_generate(
  NAME encodings
  GENERATOR gen_encodings
  OUTPUTS
    veldnls/cei.h encodings/rows.inc encodings/trie.inc encodings/families.inc encodings/literals.inc
    encodings/ebcdic_groups.inc encodings/mib_enums.inc encodings/dbcs_types.inc encodings/dbcs_languages.inc
  INPUTS
    data/encodings/rows.tsv data/encodings/profiles.tsv data/encodings/alias-models.tsv
    data/encodings/length-exceptions.tsv data/encodings/narrow-rows.tsv data/encodings/keys-extra.tsv
    data/encodings/keys-shared.tsv data/encodings/keys-groups.tsv data/encodings/keys-left-out.txt
    data/encodings/lookup-literals.tsv data/encodings/ebcdic-groups.tsv data/encodings/mib-enums.tsv
    data/encodings/dbcs-types.tsv data/encodings/dbcs-languages.tsv data/encodings/families.tsv)
