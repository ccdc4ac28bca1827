// Names of encodings and locales: every look-up, on names at guard pages.
//
// Input: the look-up, its kind or mode, an encoding (one byte each), then the name in 16-bit units, little-endian. For
// the environment the name is bytes.
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "core/name_index.h"
#include "core/session.h"
#include "core/wide_text.h"
#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "locale/name_tables.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

using Name = std::u16string;

constexpr size_t longestName = 80;
constexpr int32_t longestEncodingName = 40;
constexpr int32_t untouchedCei = 0x5A5A;
constexpr int kinds = 13;  // two beyond those that there are

struct Case {
  uint8_t choice;
  uint8_t encoding;
  Name name;
};

// The name in memory that ends, or begins, at a guard page.
const char16_t* place(const Name& name, At at) {
  static Area area(4096);
  const Room room = area.place(name.size() * sizeof(char16_t), at);
  std::memcpy(room.data(), name.data(), room.size());
  return reinterpret_cast<const char16_t*>(room.data());
}

int32_t lengthOf(const Name& name) { return static_cast<int32_t>(name.size()); }

template <char16_t fold(char16_t)>
Name folded(Name name) {
  for (char16_t& unit : name) unit = fold(unit);
  return name;
}

// ---- Encodings ----

struct Found {
  NlsStatus status;
  CEI cei;

  bool operator==(const Found&) const = default;
};

Found lookUp(const Name& name, int32_t kind, At at = At::end) {
  Found found{0, untouchedCei};
  found.status = host().nls->lookupEncoding(host().nls, place(name, at), lengthOf(name), kind, &found.cei);
  return found;
}

// All keys of the index, found by a walk through its nodes.
class Keys {
 public:
  explicit Keys(const veldnls::NameTrie& trie) : trie_(trie) { walk(1, {}); }

  int32_t valueOf(const Name& key) const {
    const auto found = values_.find(key);
    return found != values_.end() ? found->second : 0;
  }
  size_t size() const { return values_.size(); }

 private:
  void walk(int32_t state, const Name& key) {
    const veldnls::TrieNode& node = trie_.nodes[state];
    if (node.base < 0) {
      const char16_t* tail = trie_.tails - node.base;
      Name whole = key;
      while (*tail != veldnls::trieTerminator) whole += *tail++;
      values_[whole] = node.value;
      return;
    }
    for (int32_t next = std::max(node.base, 1); next <= trie_.lastIndex; ++next) {
      const int32_t unit = next - node.base;
      if (unit > 0xFFFF) break;
      if (trie_.nodes[next].check != state) continue;
      if (unit == veldnls::trieTerminator) {
        values_[key] = trie_.nodes[next].value;
      } else {
        walk(next, key + static_cast<char16_t>(unit));
      }
    }
  }

  const veldnls::NameTrie& trie_;
  std::map<Name, int32_t> values_;
};

const Keys& keys() {
  static const Keys all(veldnls::encodingNameTrie);
  return all;
}

void checkTrie(const Case& what) {
  for (const At at : {At::end, At::start}) {
    const int32_t value = veldnls::nlsTrieLookup(place(what.name, at), lengthOf(what.name), &veldnls::encodingNameTrie);
    require(value == keys().valueOf(what.name), "the index has the value of its key");
  }
}

// The text of the column that a kind searches; none for kinds without a column.
std::optional<Name> columnOf(const EncodingDescriptor& row, int32_t kind) {
  switch (kind) {
    case NLS_LOOKUP_SHORT_NAME:
      return Name(row.shortName);
    case NLS_LOOKUP_NAME:
      return Name(row.name);
    case NLS_LOOKUP_DESCRIPTION:
      return Name(row.description);
    case NLS_LOOKUP_LONG_DESCRIPTION:
      return Name(row.longDescription);
    case NLS_LOOKUP_IANA_NAME:
      return Name(row.ianaName);
    case NLS_LOOKUP_CCSID:
      return Name(row.ccsid);
    case NLS_LOOKUP_CODE_PAGE:
      return Name(row.codePage);
    case NLS_LOOKUP_JAVA_NAME:
      return Name(row.javaName);
    case NLS_LOOKUP_PREFERRED_NAME:
      return Name(row.preferredName);
    default:
      return std::nullopt;
  }
}

bool isKeyOfColumn(const Name& upper, int32_t kind) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const EncodingDescriptor* row = nullptr;
    host().nls->getEncodingDescriptor(host().nls, cei, &row);
    const std::optional<Name> text = columnOf(*row, kind);
    if (text.has_value() && folded<veldnls::foldToUpper>(*text) == upper) return true;
  }
  return false;
}

void checkIndexed(const Name& upper, Found found) {
  const int32_t value = keys().valueOf(upper);
  const bool known = value > 0 && value < NLS_CEI_COUNT;
  require(found == (known ? Found{0, value} : Found{nlsUnknownEncoding, 0}), "a name is found as the index has it");
}

void checkEncoding(const Case& what) {
  const int32_t kind = what.choice % kinds;
  const Found found = lookUp(what.name, kind);
  require(lookUp(what.name, kind, At::start) == found, "the answer depends on what lies beside the name");
  if (what.name.empty() || lengthOf(what.name) > longestEncodingName) {
    require(found == Found{nlsUnknownEncoding, untouchedCei}, "a name of no length that names have");
    return;
  }
  const Name upper = folded<veldnls::foldToUpper>(what.name);
  require(lookUp(upper, kind) == found, "names have no case");
  if (kind == NLS_LOOKUP_ANY) {
    checkIndexed(upper, found);
    return;
  }
  require(found.status == 0 || found == Found{nlsUnknownEncoding, untouchedCei}, "a failure leaves the answer");
  require(found.status != 0 || (found.cei >= 0 && found.cei < NLS_CEI_COUNT), "the answer is a row");
  if (isKeyOfColumn(upper, kind)) require(found.status == 0, "the texts of a column are found");
  if (!columnOf(EncodingDescriptor{}, kind).has_value()) require(found.status != 0, "no column finds nothing");
}

// ---- Locales ----

struct Located {
  NlsStatus status;
  const LocaleNameRow* row;

  bool operator==(const Located&) const = default;
};

const LocaleNameRow untouchedRow{};

Located locate(const Name& name, uint16_t mode, At at = At::end) {
  Located located{0, &untouchedRow};
  located.status = host().nls->findLocaleEntry(host().nls, place(name, at), lengthOf(name), mode, &located.row);
  return located;
}

template <class Row, size_t count>
bool isIn(const LocaleNameRow* row, const Row (&table)[count]) {
  return row >= table && row < table + count;
}

void checkLocated(const Located& located, uint16_t mode) {
  const bool untouched = located.row == &untouchedRow;
  switch (located.status) {
    case 0:
      require(isIn(located.row, veldnls::localeNameTable), "an exact answer is a locale with data");
      return;
    case nlsLocaleApproximated:
      require(isIn(located.row, veldnls::languageDefaultTable), "the locale that stands for a language");
      return;
    case nlsLocaleLanguageOnly:
      require(located.row == &veldnls::defaultLocaleRow, "a language without data has the default row");
      return;
    case nlsLocaleInvalid:
      require(untouched || located.row == &veldnls::defaultLocaleRow, "an unknown name has the default row or none");
      if (mode == NLS_LOCALE_STRICT) require(untouched, "the strict mode delivers nothing for an unknown name");
      if (mode == NLS_LOCALE_FALLBACK) require(!untouched, "the fallback mode always delivers a row");
      return;
    default:
      require(false, "a status that the look-up doesn't have");
  }
}

// "WLCID:" and "QUOID:" are upper case.
bool hasNumericPrefix(const Name& name) {
  const size_t length = std::min<size_t>(name.size(), 6);
  const auto agrees = [&](const char16_t* prefix) {
    return folded<veldnls::foldToUpper>(name.substr(0, length)) == Name(prefix, length);
  };
  return agrees(u"WLCID:") || agrees(u"QUOID:");
}

void checkLocale(const Case& what) {
  constexpr uint16_t modes[] = {NLS_LOCALE_FALLBACK, NLS_LOCALE_STRICT, NLS_LOCALE_WIDE};
  const uint16_t mode = what.choice < 0x80 ? modes[what.choice % std::size(modes)] : what.choice & 0x7F;
  const Located located = locate(what.name, mode);
  require(locate(what.name, mode, At::start) == located, "the answer depends on what lies beside the name");
  if (std::ranges::find(modes, mode) == std::end(modes)) {
    require(located == Located{nlsBadLookupKind, &untouchedRow}, "a mode that there isn't");
    return;
  }
  checkLocated(located, mode);
  if (!hasNumericPrefix(what.name)) {
    require(locate(folded<veldnls::foldToLower>(what.name), mode) == located, "names of locales have no case");
  }
  // What a strict search finds exactly, all modes find.
  if (mode == NLS_LOCALE_STRICT && located.status == 0) {
    require(locate(what.name, NLS_LOCALE_FALLBACK) == located, "the fallback mode finds what the strict one finds");
    require(locate(what.name, NLS_LOCALE_WIDE) == located, "the wide mode finds what the strict one finds");
  }
}

void checkAcceptance(const Case& what) {
  const CEI cei = what.choice % 2 == 0 ? what.encoding : what.encoding - 20;
  const auto accepts = [&](const Name& name, At at) {
    return host().nls->localeAcceptsEncoding(place(name, at), lengthOf(name), cei);
  };
  const NlsBool8 answer = accepts(what.name, At::end);
  require(answer <= 1, "a truth value");
  require(accepts(what.name, At::start) == answer, "the answer depends on what lies beside the name");
  require(accepts(folded<veldnls::foldToUpper>(what.name), At::end) == answer, "names of locales have no case");
  if (what.name.size() < 2) require(answer == 0, "no language accepts nothing");
}

// ---- Environment ----

constexpr const char* variables[] = {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG"};

// What a host finds out about itself from the variables that the choice names.
void checkEnvironment(const Case& what) {
  std::string text;
  for (const char16_t unit : what.name) {
    text += static_cast<char>(unit);
    text += static_cast<char>(unit >> 8);
  }
  for (size_t i = 0; i < std::size(variables); ++i) {
    unsetenv(variables[i]);
    if ((what.choice >> i & 1) != 0) setenv(variables[i], text.c_str(), 1);
  }
  const int32_t codePage = veldnls::environmentCodePage();
  Name number;
  for (const char digit : std::to_string(codePage)) number += static_cast<char16_t>(digit);
  require((lookUp(number, NLS_LOOKUP_ANY).status == 0) == (codePage != 0),
          "the environment's code page is an encoding, or told as none");
  Name locale = u"WLCID:";
  for (const char digit : std::to_string(veldnls::environmentLocaleId())) locale += static_cast<char16_t>(digit);
  const Located located = locate(locale, NLS_LOCALE_FALLBACK);
  require(located.row != &untouchedRow, "the environment's locale is one");
}

}  // namespace

void check(Input input) {
  constexpr void (*checks[])(const Case&) = {checkTrie, checkEncoding, checkLocale, checkAcceptance, checkEnvironment};
  const uint8_t lookUpChoice = input.byte();
  Case what{input.byte(), input.byte(), {}};
  while (!input.empty() && what.name.size() < longestName) what.name += static_cast<char16_t>(input.word());
  checks[lookUpChoice % std::size(checks)](what);
}

}  // namespace fuzz
