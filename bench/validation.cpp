#include <unicode/ustring.h>

#include <stdexcept>

#include "bench/groups.h"
#include "bench/material.h"

namespace bench {

namespace {

struct Row {
  const char* encoding;
  const char* text;
};

constexpr Row rows[] = {
    {"utf-8", "en"}, {"utf-8", "de"}, {"utf-8", "ja"}, {"shift-jis", "en"}, {"shift-jis", "ja"}, {"ibm-939", "ja"},
};

// ICU counts the units that a text would make. Only a bad sequence gives it another error than want of room.
Converter icuCount() {
  return makeConverter("ICU u_strFromUTF8", [](Bytes input, Room) -> size_t {
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, &length, reinterpret_cast<const char*>(input.data()), static_cast<int32_t>(input.size()),
                  &error);
    return error == U_BUFFER_OVERFLOW_ERROR ? input.size() : 0;
  });
}

void timeRow(Runner& runner, const Library& library, Material& material, const Row& row, const Form& form) {
  const Subject subject{"validate", row.encoding, row.text, form.name};
  if (!runner.wants(subject)) return;
  const Encoding& own = encoding(row.encoding);
  const Text text = material.read(row.text);
  const Pieces pieces = material.cut(hasKnownSizes(own) ? text : material.restrictedTo(own, text), own, form);
  std::vector<Converter> all{library.validator(own)};
  if (own.shape == Shape::utf8) all.push_back(icuCount());
  Group group{subject, pieces.totalBytes(), pieces.count(), {}};
  for (const Converter& validator : all) {
    pieces.forEach([&](Bytes piece) {
      if (validator.convert(piece, {}) != piece.size()) {
        throw std::runtime_error(validator.name + " finds a fault in " + subject.op + ", " + subject.text);
      }
    });
    group.candidates.push_back({validator.name, [&] { validator.convertAll(pieces, {}); }});
  }
  runner.run(group);
}

}  // namespace

void runValidation(Runner& runner, const Library& library, const std::string& textFolder) {
  Material material(library, textFolder);
  for (const Row& row : rows) {
    for (const Form& form : forms()) timeRow(runner, library, material, row, form);
  }
}

}  // namespace bench
