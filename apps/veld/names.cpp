#include "names.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "failure.h"
#include "nearest.h"
#include "text.h"

namespace veld {

namespace {

// A column ends at its terminator: its length field is a fact of its own. The short name is padded with blanks.
template <size_t capacity>
std::u16string_view columnText(const char16_t (&column)[capacity]) {
  std::u16string_view text(column, capacity);
  text = text.substr(0, std::min(text.find(u'\0'), capacity));
  const size_t last = text.find_last_not_of(u' ');
  return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

std::vector<std::u16string_view> columnTexts(const EncodingDescriptor& row) {
  std::vector<std::u16string_view> texts;
  const auto add = [&](std::u16string_view text) {
    if (!text.empty() && std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
  };
  add(columnText(row.name));
  add(columnText(row.shortName));
  add(columnText(row.description));
  add(columnText(row.identifier));
  add(columnText(row.longDescription));
  add(columnText(row.ianaName));
  add(columnText(row.javaName));
  add(columnText(row.ccsid));
  add(columnText(row.codePage));
  add(columnText(row.preferredName));
  return texts;
}

// Returns 0, the session encoding, for a name that isn't known.
CEI lookUp(QZNLS& nls, std::u16string_view name) {
  CEI cei = 0;
  const NlsStatus status =
      nls.lookupEncoding(&nls, name.data(), static_cast<int32_t>(name.size()), NLS_LOOKUP_ANY, &cei);
  return status == 0 ? cei : 0;
}

struct Candidate {
  size_t distance;
  CEI cei;
  std::string name;
};

// The name of an encoding that differs least from the one asked for, its first column winning.
Candidate nearestOfRow(QZNLS& nls, CEI cei, const std::string& wanted) {
  Candidate best{SIZE_MAX, cei, {}};
  for (const std::string& name : knownNames(nls, rowOf(nls, cei))) {
    const size_t distance = editDistance(wanted, lowerAscii(name));
    if (distance < best.distance) best = {distance, cei, name};
  }
  return best;
}

}  // namespace

CEI findEncoding(QZNLS& nls, const std::string& name) {
  const CEI cei = lookUp(nls, toUtf16(nls, name));
  if (cei != 0) return cei;
  if (lowerAscii(name) == sessionName) return 0;
  throw Failure("unknown encoding \"" + name + "\"; the nearest known names are " + listed(nearestNames(nls, name)) +
                " (\"veld encodings\" lists all)");
}

const EncodingDescriptor& rowOf(QZNLS& nls, CEI cei) {
  const EncodingDescriptor* row = nullptr;
  if (nls.getEncodingDescriptor(&nls, cei, &row) != 0) {
    throw Failure("the library has no encoding " + std::to_string(cei) + "; name one that \"veld encodings\" lists");
  }
  return *row;
}

std::string displayName(QZNLS& nls, CEI cei) {
  const EncodingDescriptor& row = rowOf(nls, cei);
  for (const std::u16string_view text : {columnText(row.name), columnText(row.shortName)}) {
    if (!text.empty()) return toUtf8(nls, text);
  }
  return "encoding " + std::to_string(cei);
}

std::vector<std::string> knownNames(QZNLS& nls, const EncodingDescriptor& row) {
  std::vector<std::string> names;
  for (const std::u16string_view text : columnTexts(row)) {
    if (lookUp(nls, text) == row.cei) names.push_back(toUtf8(nls, text));
  }
  return names;
}

std::vector<std::string> nearestNames(QZNLS& nls, const std::string& name) {
  const std::string wanted = lowerAscii(name);
  std::vector<Candidate> candidates;
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) candidates.push_back(nearestOfRow(nls, cei, wanted));
  std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    return std::tie(a.distance, a.cei) < std::tie(b.distance, b.cei);
  });
  std::vector<std::string> names;
  for (const Candidate& candidate : candidates) {
    if (candidate.name.empty() || names.size() == suggestions) break;
    names.push_back(candidate.name);
  }
  return names;
}

}  // namespace veld
