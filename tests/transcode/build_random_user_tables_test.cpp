// Overlays of random lists against a second reading of the rules, and of lists that say anything.
#include <algorithm>
#include <random>
#include <stdexcept>

#include "transcode/built_user_tables.h"
#include "transcode/private_use.h"

namespace transcode_test {

namespace {

// The same rules once more, in plain steps over lists of codes. A column that is missing throws.
class SecondReading {
 public:
  SecondReading(CEI source, CEI target, const UserCharacterTable* list)
      : source_(source), target_(target), head_(*list) {}

  Built built() const {
    try {
      return build();
    } catch (const std::out_of_range&) {
      return {};
    }
  }

 private:
  static bool isUnicode(CEI cei) { return cei == 19 || cei == 20 || (cei >= 24 && cei <= 27); }

  static Codes column(const UserCharacterTable& table, int place) {
    if (place < 0 || place >= table.columnCount) throw std::out_of_range("column");
    Codes codes;
    for (int row = 0; row < table.characterCount; ++row) {
      const uint8_t* at = table.columns[place] + 2 * row;
      codes.push_back(static_cast<uint16_t>(at[0] << 8 | at[1]));
    }
    return codes;
  }
  static int place(const UserCharacterTable& table, CEI cei) {
    for (int i = 0; i < table.columnCount; ++i) {
      if (table.ceis[i] == cei) return i;
    }
    return -1;
  }
  static int unicodePlace(const UserCharacterTable& table) {
    for (int i = 0; i < table.columnCount; ++i) {
      if (isUnicode(table.ceis[i])) return i;
    }
    return -1;
  }

  size_t rows() const { return static_cast<size_t>(head_.characterCount); }
  Codes cut(Codes codes) const {
    codes.resize(std::min(codes.size(), rows()));
    return codes;
  }
  Codes lookedUp(const Codes& keys, const Codes& values, uint16_t otherwise) const {
    const Codes sorted = column(head_, 0);
    Codes result;
    for (const uint16_t key : cut(keys)) {
      const auto found = std::find(sorted.begin(), sorted.end(), key);
      result.push_back(found == sorted.end() ? otherwise : values.at(static_cast<size_t>(found - sorted.begin())));
    }
    return result;
  }

  static Pairs zip(const Codes& keys, const Codes& values, bool asStored) {
    Pairs pairs;
    for (size_t i = 0; i < std::min(keys.size(), values.size()); ++i) {
      pairs.emplace_back(keys[i], asStored ? stored(values[i]) : values[i]);
    }
    return pairs;
  }

  Built privateUse(const Codes& codes, Codes values) const {
    std::vector<uint16_t> units(rows());
    const uint32_t surplus = veldnls::fillPrivateUse(units.data(), static_cast<uint32_t>(rows()), source_);
    Codes fill;
    for (const uint16_t unit : units) fill.push_back(exchanged(unit));
    if (surplus != 0) {
      fill = turned(fill, surplus);
      values = turned(cut(values), surplus);
    }
    return {3, zip(codes, fill, false), zip(fill, values, true)};
  }

  Built build() const {
    const int s = place(head_, source_);
    const int t = place(head_, target_);
    if (s < 0 || t < 0) return {};
    const UserCharacterTable* own = &head_;
    for (int i = 0; i < s; ++i) {
      own = own->next;
      if (own == nullptr) return {};
    }
    const UserCharacterTable* second = head_.next;
    const bool sameWidth = second != nullptr && second->columnCount == head_.columnCount;
    const bool first = head_.ceis[0] == source_;
    if (unicodePlace(head_) < 0) {
      if (sameWidth) return privateUse(column(*own, 0), column(*own, place(*own, target_)));
      if (first) return privateUse(column(head_, 0), column(head_, t));
      const EncodingDescriptor* row = nullptr;
      nls()->getEncodingDescriptor(nls(), target_, &row);
      const auto blank = static_cast<uint16_t>(row->profile.doubleBlank[0] << 8 | row->profile.doubleBlank[1]);
      return privateUse(column(*own, 0), lookedUp(column(*own, 1), column(head_, t), blank));
    }
    Codes sourceCodes, sourceValues, targetCodes, targetValues;
    const bool both =
        isUnicode(head_.ceis[0]) && second != nullptr && second->columnCount == 2 && isUnicode(second->ceis[1]);
    if (both) {
      const bool toUnicode = isUnicode(target_);
      if (!isUnicode(source_)) sourceCodes = column(*own, 0), sourceValues = column(*own, 1);
      targetCodes = toUnicode ? column(*own, 0) : column(head_, 0);
      targetValues = toUnicode ? column(*own, 1) : column(head_, t);
    } else {
      const UserCharacterTable* table = &head_;
      while (table != nullptr && !(table->columnCount > 0 && isUnicode(table->ceis[0]))) table = table->next;
      if (table == nullptr) return {};
      targetCodes = column(*table, 0);
      if (!isUnicode(source_)) {
        sourceCodes = column(*own, 0);
        sourceValues =
            sameWidth ? column(*own, unicodePlace(*own))
                      : lookedUp(first ? column(*own, 0) : column(*own, 1), column(head_, unicodePlace(head_)), 0x3000);
      }
      targetValues =
          sameWidth ? column(*table, place(*table, target_)) : lookedUp(column(*table, 1), column(head_, t), 0x3000);
    }
    const uint32_t inward = isUnicode(source_) ? 0u : 1u;
    return {inward | 2u, zip(sourceCodes, sourceValues, false), zip(cut(targetCodes), targetValues, true)};
  }

  CEI source_;
  CEI target_;
  const UserCharacterTable& head_;
};

TEST(BuildUserTables, RandomListsAgainstASecondReading) {
  std::mt19937 random(23);
  const CEI ceis[] = {unicode, ibm, sjis, U_MS950_CE, U_B_UNICODE_CE};
  int kinds[4] = {};
  for (int round = 0; round < 12000; ++round) {
    UserList list;
    const size_t tables = 1 + random() % 4;
    for (size_t t = 0; t < tables; ++t) {
      std::vector<UserList::OfEncoding> columns(1 + random() % 4);
      size_t rows = random() % 5;
      if (round % 64 == 0) rows += 182;
      const auto base = static_cast<uint16_t>(0x4000 + random() % 3);
      for (size_t c = 0; c < columns.size(); ++c) {
        columns[c].cei = ceis[random() % std::size(ceis)];
        for (size_t i = 0; i < rows; ++i) {
          // The first column ascends, so that a search finds what a look through it does.
          const size_t code = c == 0 ? base + i : 0x4000 + random() % 8;
          columns[c].codes.push_back(static_cast<uint16_t>(code));
        }
      }
      list.add(columns);
    }
    const CEI source = ceis[random() % std::size(ceis)];
    const CEI target = ceis[random() % std::size(ceis)];
    const Built built = build(source, target, list.head());
    ASSERT_EQ(built, SecondReading(source, target, list.head()).built()) << source << " to " << target;
    ++kinds[built.result];
  }
  EXPECT_GT(kinds[0], 100);
  EXPECT_EQ(kinds[1], 0);
  EXPECT_GT(kinds[2], 100);
  EXPECT_GT(kinds[3], 100);
}

// A surplus of more than a third of the rows turns beyond the column's end, where a longer one goes on.
TEST(BuildUserTables, ALargeSurplusInAShortHead) {
  const auto codes = [](size_t count, size_t first) {
    Codes result;
    for (size_t i = 0; i < count; ++i) result.push_back(static_cast<uint16_t>(first + i));
    return result;
  };
  UserList list;
  list.add({{ibm, codes(300, 0x4141)}, {U_MS950_CE, codes(300, 0xFA40)}});
  list.add({{U_MS950_CE, codes(360, 0xFA40)}, {ibm, codes(360, 0x4141)}});
  const Built built = build(U_MS950_CE, ibm, list.head());
  EXPECT_EQ(built, SecondReading(U_MS950_CE, ibm, list.head()).built());
  constexpr size_t surplus = 117;
  EXPECT_EQ(built.toTarget.at(300 - 2 * surplus - 1).second, stored(0x4141 + 299));
  EXPECT_EQ(built.toTarget.at(300 - 2 * surplus).second, 0);
}

// A list that was put in place by hand may say anything. Nothing outside of its columns is read.
TEST(BuildUserTables, HostileFigures) {
  std::mt19937 random(7);
  const CEI ceis[] = {unicode, ibm, sjis, eucJp, U_MS950_CE, -1, 19};
  constexpr int32_t figures[] = {-2147483647 - 1, -1, 0, 1, 2, 3, 4, 5, 6, 24, 25, 2147483647};
  int built = 0;
  for (int round = 0; round < 8000; ++round) {
    UserList list;
    const size_t tables = 1 + random() % 3;
    for (size_t t = 0; t < tables; ++t) {
      std::vector<UserList::OfEncoding> columns(1 + random() % 3);
      const size_t rows = random() % 4;
      for (auto& column : columns) {
        column.cei = ceis[random() % std::size(ceis)];
        for (size_t i = 0; i < rows; ++i) column.codes.push_back(static_cast<uint16_t>(random() % 3 * 0x101));
      }
      list.add(columns);
      UserCharacterTable& table = list.table(t);
      if (random() % 4 == 0) table.characterCount = figures[random() % std::size(figures)];
      if (random() % 8 == 0) table.columnBytes = std::min(table.columnBytes, figures[random() % std::size(figures)]);
      if (random() % 8 == 0) table.columnCount = std::min(table.columnCount, figures[random() % std::size(figures)]);
    }
    const CEI source = ceis[random() % std::size(ceis)];
    const CEI target = ceis[random() % std::size(ceis)];
    if (build(source, target, list.head()).result != 0) ++built;
  }
  EXPECT_GT(built, 100);
}

}  // namespace

}  // namespace transcode_test
