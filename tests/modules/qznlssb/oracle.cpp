#include "modules/qznlssb/oracle.h"

#include <algorithm>

#include "core/text/utf_ebcdic.h"
#include "modules/qznlssb/tables.h"

namespace test {

namespace {

constexpr char16_t undefinedValue = 0xFFFD;

struct Exception {
  CEI cei;
  char16_t value;
  uint8_t byte;
};

// Values whose byte isn't the lowest that means them, or that no byte means.
constexpr Exception exceptions[] = {
    {U_EBCDIC838_CE, 0x0E48, 0xED},   {U_EBCDIC838_CE, 0x0E49, 0xEE},   {U_EBCDIC838_CE, 0x0E4A, 0xEF},
    {U_OPEN_ED838_CE, 0x0E48, 0xED},  {U_OPEN_ED838_CE, 0x0E49, 0xEE},  {U_OPEN_ED838_CE, 0x0E4A, 0xEF},
    {U_OPEN_ED1149_CE, 0x000A, 0x15}, {U_OPEN_ED1149_CE, 0x0085, 0x25}, {U_WVIETNAMESE_CE, 0x0340, 0xCC},
    {U_WVIETNAMESE_CE, 0x0341, 0xEC},
};

Bytes encodeUtf8(char32_t code) {
  const auto c = static_cast<uint32_t>(code);
  const auto trail = [c](int shift) { return static_cast<uint8_t>(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) return {static_cast<uint8_t>(c)};
  if (c < 0x800) return {static_cast<uint8_t>(0xC0 | c >> 6), trail(0)};
  if (c < 0x10000) return {static_cast<uint8_t>(0xE0 | c >> 12), trail(6), trail(0)};
  return {static_cast<uint8_t>(0xF0 | c >> 18), trail(12), trail(6), trail(0)};
}

Bytes encodeUtfEbcdic(char32_t code) {
  const auto c = static_cast<uint32_t>(code);
  const auto trail = [c](int shift) { return static_cast<uint8_t>(0xA0 | (c >> shift & 0x1F)); };
  Bytes bytes;
  if (c < 0xA0) {
    bytes = {static_cast<uint8_t>(c)};
  } else if (c < 0x400) {
    bytes = {static_cast<uint8_t>(0xC0 | c >> 5), trail(0)};
  } else if (c < 0x4000) {
    bytes = {static_cast<uint8_t>(0xE0 | c >> 10), trail(5), trail(0)};
  } else {
    bytes = {static_cast<uint8_t>(0xF0 | c >> 15), trail(10), trail(5), trail(0)};
  }
  for (uint8_t& byte : bytes) byte = veldnls::i8ToEbcdic[byte];
  return bytes;
}

// What a UTF-EBCDIC text decodes to: the leads of two-byte forms lose their bits.
char32_t decodedForm(const EncodingDescriptor& row, char32_t code) {
  return row.cei == U_UTFE_CE && code >= 0xA0 && code < 0x400 ? code & 0x1F : code;
}

}  // namespace

Bytes encode(const EncodingDescriptor& row, char32_t code) {
  if (row.cei == U_UTFE_CE) return encodeUtfEbcdic(code);
  if (row.encodingClass == NLS_CLASS_UTF8) return encodeUtf8(code);
  const bool bigEndian = row.cei == U_B_UNICODE_CE || row.cei == U_B_UCS4_CE;
  if (row.encodingClass == NLS_CLASS_UTF32) return utf32({&code, 1}, bigEndian);
  const auto value = static_cast<uint32_t>(code);
  std::u16string units;
  if (value > 0xFFFF) {
    units += static_cast<char16_t>(0xD7C0 + (value >> 10));
    units += static_cast<char16_t>(0xDC00 | (value & 0x3FF));
  } else {
    units += static_cast<char16_t>(value);
  }
  return utf16(units, bigEndian);
}

std::optional<uint8_t> byteOfValue(CEI cei, char16_t value) {
  for (const Exception& exception : exceptions) {
    if (exception.cei == cei && exception.value == value) return exception.byte;
  }
  const char16_t* table = veldnls::byteToUnicodeTables[cei];
  const char16_t* found = std::find(table, table + 256, value);
  if (found == table + 256 || value == undefinedValue) return std::nullopt;
  return static_cast<uint8_t>(found - table);
}

Items toUnicode(CEI source, std::span<const uint8_t> text, const EncodingDescriptor& target) {
  Items items;
  for (const uint8_t byte : text) {
    const char16_t value = veldnls::byteToUnicodeTables[source][byte];
    items.push_back({{byte}, encode(target, value), value == 0x20, false});
  }
  return items;
}

Items fromUnicode(const EncodingDescriptor& source, std::u32string_view text, const EncodingDescriptor& target) {
  Items items;
  for (const char32_t code : text) {
    const char32_t seen = decodedForm(source, code);
    std::optional<uint8_t> byte;
    if (seen < 0x10000) byte = byteOfValue(target.cei, static_cast<char16_t>(seen));
    const auto substitution = static_cast<uint8_t>(target.substitution);
    items.push_back({encode(source, code), {byte.value_or(substitution)}, seen == 0x20, !byte.has_value()});
  }
  return items;
}

Bytes inputOf(const Items& items) {
  Bytes bytes;
  for (const Item& item : items) bytes.insert(bytes.end(), item.in.begin(), item.in.end());
  return bytes;
}

Bytes outputOf(const Items& items) {
  Bytes bytes;
  for (const Item& item : items) bytes.insert(bytes.end(), item.out.begin(), item.out.end());
  return bytes;
}

bool anySubstituted(const Items& items) { return std::ranges::any_of(items, &Item::substituted); }

Expected expect(const Items& items, uint32_t capacity, bool mayDrop, bool refused) {
  Expected expected;
  if (refused) {
    expected.status = nlsOutputTruncated;
    return expected;
  }
  size_t taken = 0;
  while (taken < items.size() && expected.output.size() + items[taken].out.size() <= capacity) {
    const Item& item = items[taken++];
    expected.output.insert(expected.output.end(), item.out.begin(), item.out.end());
    expected.consumed += static_cast<uint32_t>(item.in.size());
    expected.substituted |= item.substituted;
  }
  const bool restIsBlank = std::all_of(items.begin() + static_cast<std::ptrdiff_t>(taken), items.end(),
                                       [](const Item& item) { return item.blank; });
  if (taken < items.size()) {
    expected.status = mayDrop && restIsBlank ? 0 : nlsOutputTruncated;
  } else {
    expected.status = expected.substituted ? nlsSubstituted : 0;
  }
  return expected;
}

}  // namespace test
