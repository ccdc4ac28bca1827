// The single-byte tables against those of the system's iconv, for every page that it has.
#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>

#include "exceptions.h"
#include "modules/qznlssb/tables.h"
#include "page_text.h"
#include "support/tsv.h"

namespace {

using test::Exceptions;
using test::Fields;
using test::nothing;
using test::RowText;
using test::unitText;
using veldnls::byteFromUnicodeTables;
using veldnls::byteToUnicodeTables;

class Peer {
 public:
  Peer(const char* target, const char* source) : handle_(iconv_open(target, source)) {}
  ~Peer() {
    if (isOpen()) iconv_close(handle_);
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // The answer to one character, or an empty text if there is none. Pages that hold a letter back for a combining mark
  // are asked to let it go.
  std::string convert(std::string input) {
    constexpr auto failed = static_cast<size_t>(-1);
    char output[16];
    char* in = input.data();
    char* out = output;
    size_t inLeft = input.size();
    size_t outLeft = sizeof output;
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(handle_, &in, &inLeft, &out, &outLeft) == failed) return {};
    iconv(handle_, nullptr, nullptr, &out, &outLeft);
    return {output, sizeof output - outLeft};
  }

 private:
  iconv_t handle_;
};

int32_t peerUnit(Peer& peer, size_t byte) {
  const std::string answer = peer.convert({static_cast<char>(byte)});
  if (answer.size() != 2) return nothing;
  return static_cast<uint8_t>(answer[0]) | static_cast<uint8_t>(answer[1]) << 8;
}

int32_t peerByte(Peer& peer, size_t unit) {
  const std::string answer = peer.convert({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  return answer.size() == 1 ? static_cast<uint8_t>(answer[0]) : nothing;
}

int32_t ourUnit(int cei, size_t byte) {
  const char16_t unit = byteToUnicodeTables[cei][byte];
  return unit == 0xFFFD ? nothing : unit;
}

int32_t ourByte(int cei, size_t unit) {
  if (byteFromUnicodeTables[cei] == nullptr) return nothing;
  const uint8_t* const page = byteFromUnicodeTables[cei][unit >> 8];
  const int32_t byte = page == nullptr ? 0 : page[unit & 0xFF];
  return byte == 0 && unit != 0 ? nothing : byte;
}

// A page of iconv_pages.tsv. Mappings of a side that only the other one lacks are counted instead of compared.
struct Comparison {
  std::string page;
  std::string peerName;
  std::string left;  // "ours" or "theirs": the side whose lone mappings aren't compared; "-": neither
  int leftCount = 0;
};

class Comparer {
 public:
  Comparer(const Comparison& comparison, Exceptions& exceptions) : comparison_(comparison), exceptions_(exceptions) {}

  void compare(const char* direction, size_t key, int32_t ours, int32_t theirs) {
    if (ours == theirs) return;
    if ((comparison_.left == "ours" && theirs == nothing) || (comparison_.left == "theirs" && ours == nothing)) {
      ++left_;
      return;
    }
    const Fields fields = {comparison_.page, direction, unitText(static_cast<int32_t>(key)), unitText(ours),
                           unitText(theirs)};
    EXPECT_TRUE(exceptions_.allow(fields)) << fields[0] << " " << fields[1] << " " << fields[2] << ": " << fields[3]
                                           << " here, " << fields[4] << " in iconv";
  }

  int left() const { return left_; }

 private:
  const Comparison& comparison_;
  Exceptions& exceptions_;
  int left_ = 0;
};

void comparePage(const Comparison& comparison, const RowText& row, Exceptions& exceptions) {
  Peer decoder("UTF-16LE", comparison.peerName.c_str());
  Peer encoder(comparison.peerName.c_str(), "UTF-16LE");
  ASSERT_TRUE(decoder.isOpen() && encoder.isOpen()) << "iconv has no " << comparison.peerName;
  Comparer comparer(comparison, exceptions);
  for (size_t byte = 0; byte < 256; ++byte) {
    comparer.compare("to", byte, ourUnit(row.cei, byte), peerUnit(decoder, byte));
  }
  const bool encodes = byteFromUnicodeTables[row.cei] != nullptr;
  for (size_t unit = 0; encodes && unit < 0x10000; ++unit) {
    if (unit >= 0xD800 && unit < 0xE000) continue;
    comparer.compare("from", unit, ourByte(row.cei, unit), peerByte(encoder, unit));
  }
  EXPECT_EQ(comparer.left(), comparison.leftCount) << comparison.page;
}

TEST(SingleByteIconv, AgreesButForTheReviewedExceptions) {
#ifndef __GLIBC__
  GTEST_SKIP() << "the exceptions are those of the GNU C library";
#endif
  const std::vector<RowText> rows = test::readRowTexts();
  Exceptions exceptions(test::tablesTestPath("iconv_exceptions.tsv"));
  for (const Fields& line : test::readTsv(test::tablesTestPath("iconv_pages.tsv"))) {
    const Comparison comparison{line.at(0), line.at(1), line.at(2), std::stoi(line.at(3))};
    SCOPED_TRACE(comparison.page);
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const RowText& candidate) {
      return candidate.page == comparison.page && candidate.form != "open";
    });
    ASSERT_NE(row, rows.end());
    comparePage(comparison, *row, exceptions);
  }
  EXPECT_EQ(exceptions.unused(), std::vector<std::string>());
}

}  // namespace
