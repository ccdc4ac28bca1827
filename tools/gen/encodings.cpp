// Makes the encoding table, the index of encoding names, the relations between encodings and the header of CEI names
// from data/encodings. Every constraint that the library builds on is checked on the way.
#include "encodings_model.h"
#include "text.h"

int main(int count, char** values) {
  const gen::Arguments arguments = gen::parseArguments(count, values);
  const std::string folder = arguments.data + "/encodings/";

  gen::Encodings model;
  model.folder = folder;
  gen::loadRows(model);
  gen::loadDbcs(model);
  gen::loadProfiles(model);
  gen::checkAliases(model);
  gen::loadRelations(model);
  gen::loadKeys(model);
  gen::checkFixedFacts(model);

  const gen::Trie trie = gen::buildTrie(model.keys);
  gen::checkTrie(trie, model.keys, {folder + "keys-extra.tsv", 0});
  gen::emitEncodings(model, trie, arguments.out);
  return 0;
}
