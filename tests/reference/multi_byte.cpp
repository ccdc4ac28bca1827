// The stages: multi-byte text to Unicode or single bytes, and the way back.
#include "reference/multi_byte_stages.h"

#include <algorithm>

#include "reference/multi_byte_text.h"
#include "support/tsv.h"

namespace transcode_test {

namespace {

constexpr uint32_t ideographicSpace = 0x3000;
constexpr uint32_t euro = 0x20AC;
constexpr uint32_t firstThroughPairs = 0x9F;
constexpr Code gbUnmapped = 0x20;

bool isGb18030(const EncodingText& row) { return row.cei == 205; }
bool hasDesignators(const EncodingText& row) { return row.cei == 168 || row.cei == 169 || row.cei == 172; }
bool isIso2022(const EncodingText& row) { return row.cei == 158 || row.cei == 167 || hasDesignators(row); }
bool isSurrogate(uint32_t value) { return value >= 0xD800 && value <= 0xDFFF; }
bool isHigh(uint32_t value) { return value >= 0xD800 && value <= 0xDBFF; }
bool isLow(uint32_t value) { return value >= 0xDC00 && value <= 0xDFFF; }

void append(Bytes& bytes, std::span<const uint8_t> more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

uint32_t unit(Span text, size_t size, bool bigEndian) {
  uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) value = value * 256 + text[bigEndian ? i : size - 1 - i];
  return value;
}

bool consistsOf(Span text, const Bytes& blank) {
  if (text.size() % blank.size() != 0) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != blank[i % blank.size()]) return false;
  }
  return true;
}

// ---- To Unicode ----

// The byte that is the euro sign in a row's single-byte text, if any.
std::optional<uint8_t> oneByteEuro(const EncodingText& row) {
  if (row.singleByteSet != 1 && row.singleByteSet != 3) return uint8_t{0xE1};
  if (row.cei == 125 || isGb18030(row)) return uint8_t{0x80};
  return std::nullopt;
}

struct Decoded {
  uint32_t value;
  bool substituted;
};

Decoded decodeDouble(const EncodingText& row, Span bytes) {
  const bool blank = bytes[0] == row.doubleBlank[0] && bytes[1] == row.doubleBlank[1];
  if (isGb18030(row)) {
    const std::optional<uint16_t> found = gbUnit(unit(bytes, bytes.size(), true));
    const uint32_t value = found.value_or(gbUnmapped);
    return {value, value == gbUnmapped && !blank};
  }
  if (blank) return {ideographicSpace, false};
  const Code mask = hasDesignators(row) ? 0x8080 : 0;
  const uint16_t value = doubleByteText(row.doubleByteSet).units[unit(bytes, 2, true) | mask];
  return value == 0 ? Decoded{ideographicSpace, true} : Decoded{value, false};
}

Decoded decode(const EncodingText& row, Span bytes, bool isDouble) {
  if (isDouble) return decodeDouble(row, bytes);
  if (bytes[0] == oneByteEuro(row)) return {euro, false};
  return {singleByteText(row.singleByteSet).units[bytes[0]], false};
}

// A character of the first plane in a form, remembered from call to call.
const Bytes& characterIn(const TextForm& form, uint32_t value) {
  static std::array<std::vector<Bytes>, std::size(textForms)> known;
  std::vector<Bytes>& ofForm =
      known[static_cast<size_t>(std::ranges::find(textForms, form.cei, &TextForm::cei) - textForms)];
  ofForm.resize(0x10000);
  Bytes& bytes = ofForm[value];
  const auto character = static_cast<char32_t>(value);
  if (bytes.empty()) bytes = textIn(form, {&character, 1});
  return bytes;
}

// What all stages that read multi-byte text do; `write` puts one character and says whether it had room.
template <class Write>
StageOutcome readMultiByte(const EncodingText& row, Span input, const RunState& state, bool toByte, Write write) {
  StageOutcome outcome;
  bool doubleMode = state.resumable && state.doubleMode;
  while (outcome.read < input.size()) {
    const Scanned next = scan(row, input.subspan(outcome.read), doubleMode, state.resumable, toByte);
    doubleMode = next.isDouble;
    outcome.read += next.skipped;
    if (next.length == 0) {
      outcome.status = state.resumable ? nlsIncompleteInput : nlsSubstituted;
      break;
    }
    if (outcome.read == input.size()) break;
    bool substituted = false;
    if (!write(outcome.bytes, input.subspan(outcome.read, next.length), next.isDouble, substituted)) break;
    outcome.read += next.length;
    if (!substituted) continue;
    outcome.status = nlsSubstituted;
    outcome.substituted = true;
  }
  outcome.doubleMode = doubleMode;
  if (outcome.read < input.size() && outcome.status == 0) outcome.status = nlsOutputTruncated;
  return outcome;
}

void dropBlankRest(StageOutcome& outcome, Span input, const RunState& state, const Bytes& blank) {
  if (outcome.status != nlsOutputTruncated || !state.mayDropBlanks) return;
  if (consistsOf(input.subspan(outcome.read), blank)) outcome.status = 0;
}

// ---- From Unicode ----

struct Read {
  size_t length = 0;  // 0: more bytes are needed
  uint32_t value = 0;
  bool bad = false;
};

constexpr uint32_t replacement = 0xFFFD;

Read readUtf16(Span text, bool bigEndian) {
  if (text.size() < 2) return {};
  const uint32_t first = unit(text, 2, bigEndian);
  if (!isHigh(first)) return {2, first, false};
  if (text.size() < 4) return {};
  const uint32_t second = unit(text.subspan(2), 2, bigEndian);
  if (!isLow(second)) return {2, replacement, true};
  return {4, 0x10000 + (first - 0xD800) * 1024 + (second - 0xDC00), false};
}

const std::array<uint8_t, 256>& ebcdicToI8() {
  static const std::array<uint8_t, 256> map = [] {
    std::array<uint8_t, 256> read{};
    for (const test::Fields& line : test::readTsv("utf_ebcdic/permutation.tsv")) {
      read[std::stoul(line.at(1), nullptr, 16)] = static_cast<uint8_t>(std::stoul(line.at(0), nullptr, 16));
    }
    return read;
  }();
  return map;
}

Read readUtfEbcdic(Span text) {
  const uint32_t lead = ebcdicToI8()[text[0]];
  if (lead < 0xC0 || lead > 0xF9) return {1, lead < 0xA0 ? lead : 0, false};
  const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 5;
  if (text.size() < length) return {};
  uint32_t value = lead % (64u >> (length - 1));
  for (size_t i = 1; i < length; ++i) value = value * 32 + ebcdicToI8()[text[i]] % 32;
  return {length, value, false};
}

Read readCharacter(const TextForm& form, Span text) {
  switch (form.form) {
    case Form::utf8: {
      const Character character = nextUtf8(text);
      return {character.length, character.value.value_or(replacement), !character.value.has_value()};
    }
    case Form::utfEbcdic:
      return readUtfEbcdic(text);
    case Form::utf16:
      return readUtf16(text, form.bigEndian);
    default:
      return text.size() < 4 ? Read{} : Read{4, unit(text, 4, form.bigEndian), false};
  }
}

std::optional<Code> codeOfKatakana(const EncodingText& row, uint32_t value) {
  constexpr CEI japanese = 138;
  if (row.baseCei != japanese) return std::nullopt;
  const size_t index = value - firstHalfKatakana;
  if (row.cei == 133 || row.cei == 134) return eucKatakana()[index];
  return singleByteText(row.singleByteSet).katakana[index];
}

// The code of a value in a row, or none. Below U+009F it is a single byte.
std::optional<Code> codeOf(const EncodingText& row, uint32_t value) {
  if (value < firstThroughPairs) return singleByteText(row.singleByteSet).bytes[value];
  if (value > 0xFFFF) return std::nullopt;
  if (value == ideographicSpace) return row.doubleBlank[0] * 256u + row.doubleBlank[1];
  if (value >= firstHalfKatakana && value < firstHalfKatakana + katakanaCount) return codeOfKatakana(row, value);
  const std::optional<uint16_t>& code = doubleByteText(row.doubleByteSet).codes[value];
  if (code) return *code;
  return std::nullopt;
}

Bytes gbBytes(uint32_t value, bool& substituted) {
  if (value < 0x80) return {static_cast<uint8_t>(value)};
  const uint32_t code = gbCode(static_cast<uint16_t>(value)).value_or(gbUnmapped);
  Bytes bytes;
  for (int shift = code > 0xFFFF ? 24 : code > 0xFF ? 8 : 0; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<uint8_t>(code >> shift));
  }
  substituted |= bytes[0] == gbUnmapped;
  return bytes;
}

class Encoder {
 public:
  Encoder(const EncodingText& row, size_t capacity, bool usesGbModule)
      : row_(row), capacity_(capacity), usesGbModule_(usesGbModule) {}

  // Writes a value, or returns false if it has no room.
  bool write(uint32_t value, bool& substituted) {
    if (usesGbModule_) {
      const Bytes code = gbBytes(value, substituted);
      return put(code, code.size());
    }
    const std::optional<Code> found = codeOf(row_, value);
    substituted |= !found.has_value();
    const Code code = found.value_or(row_.doubleBlank[0] * 256u + row_.doubleBlank[1]);
    return code < 0x100 ? writeSingle(static_cast<uint8_t>(code)) : writeDouble(code);
  }

  Bytes finish() {
    leaveDoubleMode();
    return bytes;
  }

  Bytes bytes;

 private:
  bool put(Span code, size_t roomNeeded) {
    if (capacity_ - bytes.size() < roomNeeded) return false;
    append(bytes, code);
    return true;
  }

  bool writeSingle(uint8_t byte) {
    leaveDoubleMode();
    return put({&byte, 1}, 1);
  }

  // The shift-in that ends what is begun always finds room.
  bool writeDouble(Code code) {
    const size_t shift = row_.shiftLength();
    const uint8_t two[] = {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
    if (shift == 0 || doubleMode_) return put(two, shift + 2);
    if (!put(row_.shiftOut, std::max(row_.unitSize, 2 * shift + 2))) return false;
    append(bytes, two);
    return doubleMode_ = true;
  }

  void leaveDoubleMode() {
    if (doubleMode_) append(bytes, row_.shiftIn);
    doubleMode_ = false;
  }

  const EncodingText& row_;
  size_t capacity_;
  bool usesGbModule_;
  bool doubleMode_ = false;
};

Bytes blankOf(const TextForm& form) {
  const uint8_t blank = form.form == Form::utfEbcdic ? 0x40 : 0x20;
  const size_t size = form.form == Form::utf16 ? 2 : form.form == Form::utf32 ? 4 : 1;
  Bytes bytes(size);
  bytes[form.bigEndian ? size - 1 : 0] = blank;
  return bytes;
}

// The text was written in the eight-bit form of its set; here the double bytes become those of seven bits.
void clearHighBits(const EncodingText& row, StageOutcome& outcome) {
  const bool always = !hasDesignators(row);
  Bytes& bytes = outcome.bytes;
  const auto at = [&](size_t place, const Bytes& sequence) {
    const Span rest = Span(bytes).subspan(place);
    return rest.size() >= sequence.size() && std::ranges::equal(rest.first(sequence.size()), sequence);
  };
  bool doubleMode = false;
  for (size_t i = 0; i < bytes.size();) {
    if (at(i, row.shiftOut) || at(i, row.shiftIn)) {
      doubleMode = at(i, row.shiftOut);
      i += row.shiftLength();
    } else if (!doubleMode || bytes.size() - i < 2) {
      ++i;
    } else {
      const bool blank = bytes[i] == row.doubleBlank[0] && bytes[i + 1] == row.doubleBlank[1];
      if (always || blank || (bytes[i] > 0xA0 && bytes[i + 1] > 0xA0)) {
        bytes[i] &= 0x7F;
        bytes[i + 1] &= 0x7F;
      } else {
        std::ranges::copy(row.doubleBlank, bytes.begin() + static_cast<std::ptrdiff_t>(i));
        outcome.substituted = true;
        if (outcome.status != nlsIncompleteInput) outcome.status = nlsSubstituted;
      }
      i += 2;
    }
  }
}

// ---- Single bytes ----

const ByteMapText& byteMapBetween(const EncodingText& singleByte, const EncodingText& multiByte, bool toMultiByte) {
  if (singleByte.padChar == multiByte.padChar) {
    return byteMapText(singleByte.padChar == 0x20 ? ByteMapKind::asciiPassthrough : ByteMapKind::identity);
  }
  const bool multiByteIsAscii = multiByte.singleByteSet == 1 || multiByte.singleByteSet == 3;
  return byteMapText(multiByteIsAscii == toMultiByte ? ByteMapKind::ebcdicToAscii : ByteMapKind::asciiToEbcdic);
}

// The byte that counts as a blank at the end of an input which goes through a map.
uint8_t blankThrough(const ByteMapText& map, uint8_t targetBlank) {
  if (targetBlank == 0x40) return map[0x40] == 0x40 ? 0x40 : 0x20;
  return map[0x20] == 0x20 ? 0x20 : 0x40;
}

bool isSubstitution(uint8_t from, uint8_t to, uint8_t blank) { return to == blank && from != 0x20 && from != 0x40; }

}  // namespace

StageOutcome multiByteToUnicode(const EncodingText& source, const TextForm& target, Span input, size_t capacity,
                                const RunState& state) {
  const auto write = [&](Bytes& out, Span bytes, bool isDouble, bool& substituted) {
    Decoded decoded = decode(source, bytes, isDouble);
    if (target.form == Form::utf16 && isSurrogate(decoded.value)) decoded = {replacement, true};
    const Bytes& character = characterIn(target, decoded.value);
    if (capacity - out.size() < character.size()) return false;
    append(out, character);
    substituted = decoded.substituted;
    return true;
  };
  StageOutcome outcome = readMultiByte(source, input, state, false, write);
  if (!outcome.doubleMode) dropBlankRest(outcome, input, state, {source.blank()});
  return outcome;
}

StageOutcome unicodeToMultiByte(const TextForm& source, const EncodingText& target, Span input, size_t capacity,
                                const RunState& state) {
  StageOutcome outcome;
  Encoder encoder(target, capacity, isGb18030(target) && state.gbLoaded);
  while (outcome.read < input.size()) {
    const Read next = readCharacter(source, input.subspan(outcome.read));
    if (next.length == 0) {
      outcome.status = state.resumable ? nlsIncompleteInput : nlsSubstituted;
      break;
    }
    bool substituted = next.bad;
    if (!encoder.write(next.value, substituted)) break;
    outcome.read += next.length;
    if (!substituted) continue;
    outcome.status = nlsSubstituted;
    outcome.substituted = true;
  }
  outcome.bytes = encoder.finish();
  const bool hides = outcome.status == nlsIncompleteInput || (!state.resumable && outcome.status != 0);
  if (outcome.read < input.size() && !hides) outcome.status = nlsOutputTruncated;
  dropBlankRest(outcome, input, state, blankOf(source));
  if (isIso2022(target)) clearHighBits(target, outcome);
  return outcome;
}

StageOutcome byteToMultiByte(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                             const RunState& state) {
  const ByteMapText& map = byteMapBetween(source, target, true);
  const std::optional<uint8_t> euroFrom = euroByte(source.cei);
  const std::optional<Code> euroTo = euroCode(target.cei);
  StageOutcome outcome;
  for (; outcome.read < input.size() && outcome.bytes.size() < capacity; ++outcome.read) {
    const uint8_t byte = input[outcome.read];
    if (euroFrom == byte && euroTo) {
      if (*euroTo > 0xFF) {
        if (capacity - outcome.bytes.size() < 2) break;
        outcome.bytes.push_back(static_cast<uint8_t>(*euroTo >> 8));
      }
      outcome.bytes.push_back(static_cast<uint8_t>(*euroTo));
      continue;
    }
    outcome.bytes.push_back(map[byte]);
    if (!isSubstitution(byte, map[byte], target.blank())) continue;
    outcome.status = nlsSubstituted;
    outcome.substituted = true;
  }
  if (outcome.read < input.size()) outcome.status = nlsOutputTruncated;
  dropBlankRest(outcome, input, state, {blankThrough(map, target.blank())});
  return outcome;
}

StageOutcome multiByteToByte(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                             const RunState& state) {
  const ByteMapText& map = byteMapBetween(target, source, false);
  const std::optional<Code> euroFrom = euroCode(source.cei);
  const std::optional<uint8_t> euroTo = euroByte(target.cei);
  const auto write = [&](Bytes& out, Span bytes, bool isDouble, bool& substituted) {
    if (out.size() == capacity) return false;
    if (!isDouble) {
      out.push_back(map[bytes[0]]);
      substituted = isSubstitution(bytes[0], map[bytes[0]], target.blank());
    } else if (euroTo && euroFrom > 0xFFu && euroFrom == unit(bytes, 2, true)) {
      out.push_back(*euroTo);
    } else {
      out.push_back(target.blank());
      substituted = true;
    }
    return true;
  };
  StageOutcome outcome = readMultiByte(source, input, state, true, write);
  if (!outcome.doubleMode) dropBlankRest(outcome, input, state, {blankThrough(map, target.blank())});
  return outcome;
}

}  // namespace transcode_test
