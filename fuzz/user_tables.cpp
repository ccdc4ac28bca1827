// Lists of user characters, sound and hostile, and the pipelines that take overlays from them.
//
// Input: what to try and which request for memory fails (one byte each), the encodings of a pair (one byte each), count
// of tables (one); for each table its columns, rows, bytes of a column, and a byte that spoils one of these figures;
// for each column its encoding (one byte) and its codes. What is left is a text.
#include <climits>
#include <deque>
#include <memory>

#include "faults/failing_memory.h"
#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "reference/multi_byte.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

using transcode_test::encodingText;
using transcode_test::isMultiByteClass;

constexpr size_t mostTables = 4;
constexpr int mostColumns = 8;
constexpr int mostRows = 12;
constexpr size_t longestText = 300;
constexpr int32_t copiedCeis = 6;

constexpr CEI encodings[] = {U_L_UNICODE_CE, U_SHIFTJIS_CE, U_EUCJP_CE,   U_IBM939_CE,    U_BIG5_CE, U_EUCKR_CE,
                             U_UTF8_CE,      U_MS936_CE,    U_UNICODE_CE, U_ISO2022JP_CE, U_MS950_CE};

constexpr unsigned sortsColumns = 1;
constexpr unsigned spoilsFigures = 2;
constexpr unsigned failsMemory = 4;

CEI chosenEncoding(Input& input) { return encodings[input.byte() % std::size(encodings)]; }

class List {
 public:
  List(Input& input, unsigned trials) {
    const size_t count = input.byte() % mostTables + 1;
    for (size_t i = 0; i < count; ++i) addTable(input, trials);
  }

  const UserCharacterTable* head() const { return &tables_.front(); }

 private:
  void addTable(Input& input, unsigned trials) {
    UserCharacterTable& table = tables_.emplace_back();
    table.columnCount = input.byte() % (mostColumns + 1);
    table.characterCount = input.byte() % (mostRows + 1);
    table.columnBytes = 2 * table.characterCount + input.byte() % 3;
    const uint8_t spoiling = input.byte();
    for (int32_t i = 0; i < table.columnCount; ++i) {
      table.ceis[i] = chosenEncoding(input);
      table.columns[i] = addColumn(input, table, (trials & sortsColumns) != 0);
    }
    if ((trials & spoilsFigures) != 0) spoil(table, spoiling);
    if (tables_.size() > 1) tables_[tables_.size() - 2].next = &table;
  }

  // Exactly as long as it says, so that a sanitizer sees a read behind it.
  uint8_t* addColumn(Input& input, const UserCharacterTable& table, bool sorts) {
    std::vector<uint16_t> codes;
    for (int32_t row = 0; row < table.characterCount; ++row) codes.push_back(input.word());
    if (sorts) std::ranges::sort(codes);
    auto& column = columns_.emplace_back(new uint8_t[static_cast<size_t>(table.columnBytes)]());
    for (size_t row = 0; row < codes.size(); ++row) {
      column[2 * row] = static_cast<uint8_t>(codes[row] >> 8);
      column[2 * row + 1] = static_cast<uint8_t>(codes[row]);
    }
    return column.get();
  }

  static void spoil(UserCharacterTable& table, uint8_t how) {
    switch (how % 6) {
      case 0:
        table.columnCount = -1;
        break;
      case 1:
        table.columnCount = 25;
        break;
      case 2:
        table.characterCount = INT32_MAX;
        break;
      case 3:
        table.characterCount = INT32_MIN;
        break;
      case 4:
        table.columnBytes = -2;
        break;
      default:
        table.columns[how % mostColumns] = nullptr;
        break;
    }
  }

  std::deque<UserCharacterTable> tables_;
  std::deque<std::unique_ptr<uint8_t[]>> columns_;
};

void requireCopy(const UserCharacterTable* copy, const UserCharacterTable* list) {
  for (; list != nullptr; list = list->next, copy = copy->next) {
    require(copy != nullptr, "every table is copied");
    require(copy->columnCount == list->columnCount && copy->characterCount == list->characterCount &&
                copy->columnBytes == list->columnBytes,
            "the figures are copied");
    require(std::equal(list->ceis, list->ceis + copiedCeis, copy->ceis), "the first encodings are copied");
    for (int32_t i = 0; i < list->columnCount; ++i) {
      const auto size = static_cast<size_t>(list->columnBytes);
      requireEqual({copy->columns[i], size}, {list->columns[i], size}, "the columns are copied");
    }
  }
  require(copy == nullptr, "no more tables than there are");
}

// ---- Pipelines ----

struct Converted {
  NlsStatus status;
  Bytes bytes;
};

Converted convert(TranscodingPipeline* pipeline, Span text) {
  Bytes output(12 * text.size() + 64);
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcode(pipeline, text.data(), static_cast<uint32_t>(text.size()), output.data(),
                                               static_cast<uint32_t>(output.size()), &written, nullptr);
  output.resize(written);
  return {status, output};
}

// A look-up halves: it finds each key of a list in strict order.
bool isOrdered(const CodeOverlay& overlay) {
  return std::is_sorted(overlay.pairs, overlay.pairs + overlay.count,
                        [](const NlsCodePair& a, const NlsCodePair& b) { return a.key <= b.key; });
}

// Codes of the source come out as the overlay has them.
void checkCodes(TranscodingPipeline* pipeline, const CodeOverlay& overlay) {
  const auto& row = encodingText(pipeline->sourceCei);
  for (uint32_t i = 0; i < overlay.count; ++i) {
    const NlsCodePair& pair = overlay.pairs[i];
    Bytes text = row.shiftOut;
    const uint8_t code[] = {static_cast<uint8_t>(pair.key >> 8), static_cast<uint8_t>(pair.key)};
    text.insert(text.end(), code, code + 2);
    const auto scanned = scan(row, text, false, false, false);
    if (!scanned.isDouble || scanned.length != 2 || scanned.skipped != row.shiftLength()) continue;
    if (pair.value == 0x3000 || (pair.value >= 0xD800 && pair.value <= 0xDFFF)) continue;
    const Bytes wanted = {static_cast<uint8_t>(pair.value), static_cast<uint8_t>(pair.value >> 8)};
    requireEqual(convert(pipeline, text).bytes, wanted, "a user character");
  }
}

// Units come out as the overlay's codes, the low byte of a value first; with a zero first byte as a single byte.
void checkUnits(TranscodingPipeline* pipeline, const CodeOverlay& overlay) {
  const auto& row = encodingText(pipeline->targetCei);
  if (row.cei == U_ISO2022JP_CE) return;  // looks at what is written once more
  for (uint32_t i = 0; i < overlay.count; ++i) {
    const NlsCodePair& pair = overlay.pairs[i];
    if (pair.key < 0x9F || (pair.key >= 0xD800 && pair.key <= 0xDFFF)) continue;
    const Bytes unit = {static_cast<uint8_t>(pair.key), static_cast<uint8_t>(pair.key >> 8)};
    const uint8_t code[] = {static_cast<uint8_t>(pair.value), static_cast<uint8_t>(pair.value >> 8)};
    Bytes wanted = {code[1]};
    if (code[0] != 0) {
      wanted = row.shiftOut;
      wanted.insert(wanted.end(), code, code + 2);
      wanted.insert(wanted.end(), row.shiftIn.begin(), row.shiftIn.end());
    }
    requireEqual(convert(pipeline, unit).bytes, wanted, "the code of a user character");
  }
}

void checkPipeline(CEI source, CEI target, const Converted& without, Span text) {
  const Pipeline pipeline(source, target);
  if (pipeline == nullptr) return;
  const CodeOverlay* overlay = pipeline->source.overlay;
  const bool reads = isMultiByteClass(encodingText(pipeline->sourceCei).encodingClass);
  const Converted converted = convert(pipeline, text);
  if (overlay == nullptr && pipeline->target.overlay == nullptr) {
    requireEqual(converted.bytes, without.bytes, "without overlays nothing changes");
    require(converted.status == without.status, "without overlays no status changes");
  }
  if (overlay == nullptr || !isOrdered(*overlay)) return;
  if (reads && pipeline->targetCei == U_L_UNICODE_CE) checkCodes(pipeline, *overlay);
  if (!reads && pipeline->sourceCei == U_L_UNICODE_CE) checkUnits(pipeline, *overlay);
}

}  // namespace

void check(Input input) {
  const unsigned trials = input.byte();
  const int failing = input.byte() % 40;
  const CEI source = chosenEncoding(input);
  const CEI target = chosenEncoding(input);
  const List list(input, trials);
  const Bytes text = input.text(longestText);
  QZNLS* nls = host().nls;

  // Modules stay once they are loaded.
  Converted without{0, {}};
  if (const Pipeline pipeline(source, target); pipeline != nullptr) without = convert(pipeline, text);
  const uint64_t used = faults_test::usedBytes(nls->pool);
  {
    const bool fails = (trials & failsMemory) != 0;
    const faults_test::FailingMemory memory(host().memory, faults_test::Failure::once, fails ? failing : 0);
    UserCharacterTable* copy = nls->setUserCharacterTables(nls, list.head());
    require(nls->userCharacterTables == copy, "the list in use is the copy");
    if (copy != nullptr) requireCopy(copy, list.head());
    checkPipeline(source, target, without, text);
    nls->userCharacterTables = nullptr;
    require(nls->freeUserCharacterTables(nls, copy) == 0, "a list ends");
  }
  require(faults_test::usedBytes(nls->pool) == used, "what lists and overlays took is given back");
}

}  // namespace fuzz
