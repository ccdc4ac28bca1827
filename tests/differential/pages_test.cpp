// Conversions between single-byte pages and UTF-16 against ICU, for every page that it has.
#include <gtest/gtest.h>

#include <algorithm>

#include "differential/differences.h"
#include "differential/peers.h"
#include "page_text.h"
#include "transcode/harness.h"

namespace differential_test {

namespace {

using transcode_test::Pipeline;

constexpr const char* none = "-";

std::string ours(TranscodingPipeline* pipeline, Span text, std::string_view undefined) {
  uint8_t output[8];
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcodeResumable(pipeline, text.data(), static_cast<uint32_t>(text.size()),
                                                        output, sizeof output, &written, nullptr, nullptr);
  const std::string answer = test::toHex(Span(output, written));
  return status != 0 || answer == undefined ? none : answer;
}

std::string theirs(const std::string& source, const std::string& target, Span text) {
  const std::optional<Bytes> answer = icu.convert(source, target, text);
  // ICU drops characters that no text shows, as joiners, where the page has none for them.
  return answer && !answer->empty() ? test::toHex(*answer) : none;
}

// Characters that only one side has are one kind, whatever they are.
std::string kindOf(const std::string& here, const std::string& there) {
  if (here == none) return "theirs only";
  return there == none ? "ours only" : here + "/" + there;
}

void addCase(Differences& differences, uint32_t number, const std::string& here, const std::string& there) {
  if (here == there) {
    differences.addSame();
  } else {
    differences.add(number, number, here, there, kindOf(here, there));
  }
}

void compareToUnicode(CEI cei, const std::string& page, const std::string& converter, test::Exceptions& listed) {
  const Pipeline pipeline(cei, U_L_UNICODE_CE);
  Differences differences(listed, {page, "to"});
  for (uint32_t byte = 0; byte < 0x100; ++byte) {
    const uint8_t text[] = {static_cast<uint8_t>(byte)};
    // Bytes without a meaning come out as U+FFFD without a status.
    addCase(differences, byte, ours(pipeline, text, "FD FF"), theirs(converter, "UTF-16LE", text));
  }
}

void compareFromUnicode(CEI cei, const std::string& page, const std::string& converter, test::Exceptions& listed) {
  const Pipeline pipeline(U_L_UNICODE_CE, cei);
  if (pipeline == nullptr) return;  // a page that can only be read
  Differences differences(listed, {page, "from"});
  for (uint32_t unit = 0; unit < 0x10000; ++unit) {
    if (unit >= 0xD800 && unit < 0xE000) continue;
    const uint8_t text[] = {static_cast<uint8_t>(unit), static_cast<uint8_t>(unit >> 8)};
    addCase(differences, unit, ours(pipeline, text, ""), theirs("UTF-16LE", converter, text));
  }
}

TEST(PagePeers, EveryByteAndUnit) {
  test::Exceptions listed(listPath("pages.tsv"));
  const std::vector<test::RowText> rows = test::readRowTexts();
  for (const test::Fields& line : test::readTsv(listPath("icu_pages.tsv"))) {
    const std::string& page = line.at(0);
    const auto row = std::ranges::find_if(
        rows, [&](const test::RowText& candidate) { return candidate.page == page && candidate.form != "open"; });
    ASSERT_NE(row, rows.end()) << page;
    compareToUnicode(row->cei, page, line.at(1), listed);
    compareFromUnicode(row->cei, page, line.at(1), listed);
  }
  EXPECT_EQ(listed.unused(), std::vector<std::string>());
}

}  // namespace

}  // namespace differential_test
