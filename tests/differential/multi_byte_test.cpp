// Every code of multi-byte encodings and every unit of UTF-16, one at a time, against the converters of ICU and of the
// system's iconv.
//
// The differences are listed in multi_byte.tsv by kind and range, with their number: a case belongs to the narrowest
// range of its kind that holds it.
#include <gtest/gtest.h>

#include <algorithm>

#include "differential/differences.h"
#include "differential/multi_byte_peers.h"
#include "reference/checked_route.h"
#include "support/tsv.h"

namespace differential_test {

namespace {

using transcode_test::EncodingText;
using transcode_test::Pipeline;

const std::string none = "-";

Bytes bytesOf(const std::string& text) { return text == none ? Bytes() : test::fromHex(text); }

Bytes joined(std::initializer_list<Span> parts) {
  Bytes bytes;
  for (const Span part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  return bytes;
}

const EncodingText& encodingNamed(const std::string& name) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (transcode_test::encodingText(cei).name == name) return transcode_test::encodingText(cei);
  }
  throw std::runtime_error("no encoding " + name);
}

// ---- The list ----

struct Listed {
  test::Fields
      line;  // encoding, converter, direction, kind, first, last, how many, ours and theirs of the first, reason
  uint32_t first;
  uint32_t last;
  uint32_t wanted;
  uint32_t found = 0;
};

uint32_t hex(const std::string& text) { return static_cast<uint32_t>(std::stoul(text, nullptr, 16)); }

const std::vector<test::Fields>& allLines() {
  static const std::vector<test::Fields> lines = test::readTsv(listPath("multi_byte.tsv"));
  return lines;
}

// The lines about one encoding and converter.
class List {
 public:
  List(const std::string& encoding, const std::string& converter) {
    for (const test::Fields& line : allLines()) {
      if (line.at(0) != encoding || line.at(1) != converter) continue;
      lines_.push_back({line, hex(line.at(4)), hex(line.at(5)), static_cast<uint32_t>(std::stoul(line.at(6)))});
    }
  }

  void count(const test::Fields& subject, const std::string& kind, uint32_t number, const std::string& ours,
             const std::string& theirs) {
    Listed* narrowest = nullptr;
    for (Listed& listed : lines_) {
      if (listed.line[2] != subject[2] || listed.line[3] != kind || number < listed.first || number > listed.last)
        continue;
      if (narrowest == nullptr || listed.last - listed.first < narrowest->last - narrowest->first) narrowest = &listed;
    }
    if (narrowest == nullptr) {
      ADD_FAILURE() << "unlisted: " << subject[0] << ", " << subject[1] << ", " << subject[2] << ", " << kind << ": "
                    << std::hex << number << " " << ours << " / " << theirs;
      return;
    }
    if (narrowest->found++ != 0) return;
    EXPECT_EQ(number, narrowest->first) << describe(*narrowest) << " begins elsewhere";
    EXPECT_EQ(ours, narrowest->line[7]) << describe(*narrowest);
    EXPECT_EQ(theirs, narrowest->line[8]) << describe(*narrowest);
  }

  void expectCounts() const {
    for (const Listed& listed : lines_) EXPECT_EQ(listed.found, listed.wanted) << describe(listed);
  }

 private:
  static std::string describe(const Listed& listed) {
    std::string text;
    for (const std::string& field : listed.line) text += field + " | ";
    return text;
  }

  std::vector<Listed> lines_;
};

bool isPrivate(uint32_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

// The unit of an answer in UTF-16LE, if it is one.
uint32_t unitOf(const std::string& answer) {
  const Bytes bytes = bytesOf(answer);
  return bytes.size() == 2 ? bytes[0] + bytes[1] * 256u : 0;
}

std::string kindOf(const std::string& ours, const std::string& theirs, bool isPrivateUse) {
  const std::string kind = ours == none ? "theirs only" : theirs == none ? "ours only" : "different";
  return isPrivateUse ? kind + ", private use" : kind;
}

// ---- A comparison ----

// A row and a peer's form of it: what stands ahead of a text, and around characters of two bytes.
struct Comparison {
  test::Fields line;
  const EncodingText& row;
  Bytes intro;
  Bytes shiftOut;
  Bytes shiftIn;
  PeerConverter peer;

  explicit Comparison(const test::Fields& fields)
      : line(fields),
        row(encodingNamed(fields.at(0))),
        intro(bytesOf(fields.at(3))),
        shiftOut(bytesOf(fields.at(4))),
        shiftIn(bytesOf(fields.at(5))),
        peer(fields.at(1), fields.at(2)) {}

  test::Fields subject(const char* direction) const { return {line.at(0), line.at(2), direction}; }
};

// The bytes of a single character without what a form puts around it.
Bytes bare(Span bytes, const Bytes& intro, const Bytes& shiftOut, const Bytes& shiftIn) {
  const auto startsWith = [&bytes](const Bytes& sequence) {
    return bytes.size() >= sequence.size() && std::ranges::equal(bytes.first(sequence.size()), sequence);
  };
  if (startsWith(intro)) bytes = bytes.subspan(intro.size());
  const bool shifted = !shiftOut.empty() && bytes.size() > shiftOut.size() + shiftIn.size() && startsWith(shiftOut);
  if (shifted) bytes = bytes.subspan(shiftOut.size(), bytes.size() - shiftOut.size() - shiftIn.size());
  return {bytes.begin(), bytes.end()};
}

struct Answer {
  NlsStatus status;
  Bytes bytes;
};

Answer convert(TranscodingPipeline* pipeline, Span text) {
  uint8_t output[64];
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcode(pipeline, text.data(), static_cast<uint32_t>(text.size()), output,
                                               sizeof output, &written, nullptr);
  return {status, Bytes(output, output + written)};
}

class ToUnicode {
 public:
  ToUnicode(Comparison& comparison, List& list)
      : comparison_(comparison), list_(list), pipeline_(comparison.row.cei, U_L_UNICODE_CE) {}

  void compare() {
    for (uint32_t byte = 0; byte < 0x100; ++byte) {
      const Bytes code{static_cast<uint8_t>(byte)};
      if (isSingle(code[0])) compareCode(byte, code, false);
    }
    for (uint32_t number = 0x100; number < 0x10000; ++number) {
      const Bytes code{static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)};
      if (isDouble(code)) compareCode(number, code, true);
    }
    if (row().cei == U_GB18030_CE) compareFourBytes();
  }

 private:
  const EncodingText& row() const { return comparison_.row; }
  bool isShifted() const { return row().shiftLength() != 0; }
  bool isSevenBit() const { return !comparison_.intro.empty() || comparison_.shiftOut.size() > 1; }

  bool beginsShift(uint8_t byte) const {
    return isShifted() && (byte == row().shiftOut[0] || byte == row().shiftIn[0] || (isSevenBit() && byte == 0x1B));
  }
  bool isSingle(uint8_t byte) const {
    if (isShifted()) return !beginsShift(byte);
    return scan(row(), Bytes{byte, 'A'}, false, false, false).length == 1;
  }
  bool isDouble(const Bytes& code) const {
    const auto isGraphic = [](uint8_t byte) { return byte > 0x20 && byte < 0x7F; };
    if (isSevenBit()) return isGraphic(code[0]) && isGraphic(code[1]);
    return isShifted() ? !beginsShift(code[0]) : scan(row(), code, false, false, false).length == 2;
  }

  void compareFourBytes() {
    for (uint32_t place = 0; place < 126 * 10 * 126 * 10; ++place) {
      const Bytes code{static_cast<uint8_t>(0x81 + place / 12600), static_cast<uint8_t>(0x30 + place / 1260 % 10),
                       static_cast<uint8_t>(0x81 + place / 10 % 126), static_cast<uint8_t>(0x30 + place % 10)};
      uint32_t number = 0;
      for (const uint8_t byte : code) number = number << 8 | byte;
      compareCode(number, code, false);
    }
  }

  void compareCode(uint32_t number, const Bytes& code, bool shifts) {
    const std::string here = ours(shifts ? joined({row().shiftOut, code, row().shiftIn}) : code, code);
    const std::string there =
        theirs(shifts ? joined({comparison_.intro, comparison_.shiftOut, code, comparison_.shiftIn})
                      : joined({comparison_.intro, code}));
    if (here == there) return;
    const bool isPrivateUse = isPrivate(unitOf(here)) || isPrivate(unitOf(there));
    list_.count(comparison_.subject("to"), kindOf(here, there, isPrivateUse), number, here, there);
  }

  // A single byte that isn't the blank and comes out as one has no meaning.
  std::string ours(Span text, const Bytes& code) const {
    const Answer answer = convert(pipeline_, text);
    const std::string units = test::toHex(answer.bytes);
    const bool undefined = code.size() == 1 && code[0] != row().blank() && units == "20 00";
    return answer.status != 0 || undefined ? none : units;
  }

  std::string theirs(Span text) const {
    const std::optional<Bytes> units = comparison_.peer.decode(text);
    if (!units) return none;
    const bool isPair = units->size() == 4 && (units->at(1) & 0xFC) == 0xD8;
    return units->size() == 2 || isPair ? test::toHex(*units) : none;
  }

  Comparison& comparison_;
  List& list_;
  Pipeline pipeline_;
};

void compareFromUnicode(Comparison& comparison, List& list) {
  const Pipeline pipeline(U_L_UNICODE_CE, comparison.row.cei);
  const EncodingText& row = comparison.row;
  const size_t longest = row.cei == U_GB18030_CE ? 4 : 2;
  for (uint32_t unit = 0; unit < 0x10000; ++unit) {
    if (unit >= 0xD800 && unit < 0xE000) continue;
    const uint8_t text[] = {static_cast<uint8_t>(unit), static_cast<uint8_t>(unit >> 8)};
    const Answer answer = convert(pipeline, text);
    const std::string here = answer.status != 0 ? none : test::toHex(bare(answer.bytes, {}, row.shiftOut, row.shiftIn));
    std::string there = none;
    if (const std::optional<Bytes> bytes = comparison.peer.encode(text)) {
      const Bytes code = bare(*bytes, comparison.intro, comparison.shiftOut, comparison.shiftIn);
      // More is a character of another set, which a designator announces.
      if (!code.empty() && code.size() <= longest) there = test::toHex(code);
    }
    if (here != there) list.count(comparison.subject("from"), kindOf(here, there, isPrivate(unit)), unit, here, there);
  }
}

// The peers' tables are those of Debian 12; others have other differences.
class MultiBytePeers : public testing::TestWithParam<test::Fields> {};

TEST_P(MultiBytePeers, EveryCodeAndUnit) {
  transcode_test::loadGbModule();
  Comparison comparison(GetParam());
  List list(comparison.line.at(0), comparison.line.at(2));
  ToUnicode(comparison, list).compare();
  compareFromUnicode(comparison, list);
  list.expectCounts();
}

TEST(MultiBytePeersList, HasNoLineOfAPairThatIsNotCompared) {
  const std::vector<test::Fields> converters = test::readTsv(listPath("multi_byte_converters.tsv"));
  for (const test::Fields& line : allLines()) {
    const auto concerns = [&](const test::Fields& pair) {
      return pair.at(0) == line.at(0) && pair.at(2) == line.at(1);
    };
    EXPECT_TRUE(std::ranges::any_of(converters, concerns)) << line.at(0) << ", " << line.at(1);
    EXPECT_FALSE(line.at(9).empty());
  }
}

INSTANTIATE_TEST_SUITE_P(Converters, MultiBytePeers,
                         testing::ValuesIn(test::readTsv(listPath("multi_byte_converters.tsv"))),
                         [](const auto& converter) {
                           std::string name = converter.param.at(0) + "_" + converter.param.at(2);
                           std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
                           return name;
                         });

}  // namespace

}  // namespace differential_test
