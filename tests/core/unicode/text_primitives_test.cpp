#include "core/text_primitives.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

#include "support/guard.h"

using namespace veldnls;
using test::GuardedBuffer;

namespace {

TEST(TextPrimitives, NarrowLength) {
  EXPECT_EQ(nlsNarrowLength(nullptr), 0);
  EXPECT_EQ(nlsNarrowLength(""), 0);
  EXPECT_EQ(nlsNarrowLength("veld"), 4);
  EXPECT_EQ(nlsNarrowLength("a\0b"), 1);
  GuardedBuffer edge(3);
  edge.data()[2] = 0;
  EXPECT_EQ(nlsNarrowLength(reinterpret_cast<const char*>(edge.data())), 2);
}

TEST(TextPrimitives, WideLength) {
  EXPECT_EQ(nlsWideLength(nullptr), 0);
  EXPECT_EQ(nlsWideLength(u""), 0);
  EXPECT_EQ(nlsWideLength(u"v\u0100\u4E00d"), 4);
  EXPECT_EQ(nlsWideLength(u"a\0b"), 1);
  GuardedBuffer edge(4);
  edge.data()[2] = edge.data()[3] = 0;
  EXPECT_EQ(nlsWideLength(reinterpret_cast<const char16_t*>(edge.data())), 1);
}

TEST(TextPrimitives, CopyBytes) {
  const char source[] = "abcdef";
  char target[] = "------";
  nlsCopyBytes(source, target, 4);
  EXPECT_STREQ(target, "abcd--");
  nlsCopyBytes(source, target, 0);
  nlsCopyBytes(source, target, -1);
  nlsCopyBytes(nullptr, nullptr, 0);
  EXPECT_STREQ(target, "abcd--");
}

TEST(TextPrimitives, CopyBytesRunsForward) {
  char text[] = "abcdef";
  nlsCopyBytes(text + 2, text, 4);
  EXPECT_STREQ(text, "cdefef");
  char repeated[] = "abcdef";
  nlsCopyBytes(repeated, repeated + 1, 5);
  EXPECT_STREQ(repeated, "aaaaaa");
}

TEST(TextPrimitives, CopyAndMoveStayInside) {
  for (size_t size = 0; size <= 40; ++size) {
    std::vector<uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), uint8_t{1});
    for (const auto at : {GuardedBuffer::At::end, GuardedBuffer::At::start}) {
      GuardedBuffer source(bytes, at);
      GuardedBuffer copied(size, at);
      GuardedBuffer moved(size, at);
      nlsCopyBytes(source.data(), copied.data(), static_cast<int64_t>(size));
      nlsMoveBytes(source.data(), moved.data(), static_cast<int64_t>(size));
      EXPECT_TRUE(std::ranges::equal(copied.bytes(), bytes));
      EXPECT_TRUE(std::ranges::equal(moved.bytes(), bytes));
    }
  }
}

TEST(TextPrimitives, MoveBytesRightByOne) {
  char text[] = "12345-";
  nlsMoveBytes(text, text + 1, 5);
  EXPECT_STREQ(text, "112345");
}

TEST(TextPrimitives, MoveBytesAtEveryDistance) {
  constexpr size_t room = 48;
  for (size_t from = 0; from < room; ++from) {
    for (size_t to = 0; to < room; ++to) {
      const size_t count = room - std::max(from, to);
      std::string text(room, '\0');
      std::iota(text.begin(), text.end(), '!');
      const std::string piece = text.substr(from, count);
      std::string expected = text;
      expected.replace(to, count, piece);
      nlsMoveBytes(text.data() + from, text.data() + to, static_cast<int64_t>(count));
      ASSERT_EQ(text, expected) << from << " to " << to;
    }
  }
  nlsMoveBytes(nullptr, nullptr, 0);
  nlsMoveBytes(nullptr, nullptr, -5);
}

TEST(TextPrimitives, AllBytesEqual) {
  const uint8_t blanks[] = {0x40, 0x40, 0x40, 0x41};
  EXPECT_TRUE(nlsAllBytesEqual(0x40, blanks, 3));
  EXPECT_FALSE(nlsAllBytesEqual(0x40, blanks, 4));
  EXPECT_TRUE(nlsAllBytesEqual(0xABCDEF40, blanks, 3));
  EXPECT_FALSE(nlsAllBytesEqual(0x4000, blanks, 3));
  EXPECT_TRUE(nlsAllBytesEqual(0x99, blanks, 0));
  EXPECT_TRUE(nlsAllBytesEqual(0x99, nullptr, 0));
  GuardedBuffer edge(5, GuardedBuffer::At::end, 0x20);
  EXPECT_TRUE(nlsAllBytesEqual(0x20, edge.data(), 5));
}

TEST(TextPrimitives, AllWideEqual) {
  const char16_t units[] = {0x3000, 0x3000, 0x3001};
  EXPECT_TRUE(nlsAllWideEqual(0x3000, units, 2));
  EXPECT_FALSE(nlsAllWideEqual(0x3000, units, 3));
  EXPECT_TRUE(nlsAllWideEqual(0xFFFF3000, units, 2));
  EXPECT_FALSE(nlsAllWideEqual(0x00, units, 1));
  EXPECT_TRUE(nlsAllWideEqual(1, nullptr, 0));
  GuardedBuffer edge(6, GuardedBuffer::At::end, 0x20);
  EXPECT_TRUE(nlsAllWideEqual(0x2020, reinterpret_cast<const char16_t*>(edge.data()), 3));
}

TEST(TextPrimitives, ReverseWide) {
  for (int32_t count = 0; count <= 9; ++count) {
    std::u16string text(static_cast<size_t>(count), u'\0');
    std::iota(text.begin(), text.end(), char16_t{0x4E00});
    const std::u16string expected(text.rbegin(), text.rend());
    EXPECT_EQ(nlsReverseWide(text.data(), count), 0u);
    EXPECT_EQ(text, expected) << count;
  }
  char16_t three[] = u"abcd";
  nlsReverseWide(three, 3);
  EXPECT_EQ(std::u16string(three), u"cbad");
  nlsReverseWide(three, -2);
  EXPECT_EQ(std::u16string(three), u"cbad");
  EXPECT_EQ(nlsReverseWide(nullptr, 0), 0u);
}

TEST(TextPrimitives, ReverseBytes) {
  for (int32_t count = 0; count <= 9; ++count) {
    std::string text(static_cast<size_t>(count), '\0');
    std::iota(text.begin(), text.end(), 'a');
    const std::string expected(text.rbegin(), text.rend());
    EXPECT_EQ(nlsReverseBytes(text.data(), count), 0u);
    EXPECT_EQ(text, expected) << count;
  }
  EXPECT_EQ(nlsReverseBytes(nullptr, 0), 0u);
  EXPECT_EQ(nlsReverseBytes(nullptr, -1), 0u);
}

TEST(TextPrimitives, FillWide) {
  char16_t text[] = u"abcd";
  nlsFillWide(text, 0x3000, 3);
  EXPECT_EQ(std::u16string(text), u"\u3000\u3000\u3000d");
  nlsFillWide(text, u'x', 0);
  nlsFillWide(text, u'x', -1);
  nlsFillWide(nullptr, u'x', 0);
  EXPECT_EQ(std::u16string(text), u"\u3000\u3000\u3000d");
  GuardedBuffer edge(14);
  nlsFillWide(reinterpret_cast<char16_t*>(edge.data()), 0x1234, 7);
  EXPECT_TRUE(nlsAllWideEqual(0x1234, reinterpret_cast<const char16_t*>(edge.data()), 7));
}

TEST(TextPrimitives, TrimTrailingBlanks) {
  EXPECT_EQ(nlsTrimTrailingBlanks(u"ab  ", 4), 2);
  EXPECT_EQ(nlsTrimTrailingBlanks(u"ab\t\u3000", 4), 4);
  EXPECT_EQ(nlsTrimTrailingBlanks(u" a b ", 5), 4);
  EXPECT_EQ(nlsTrimTrailingBlanks(u"ab  ", 2), 2);
  EXPECT_EQ(nlsTrimTrailingBlanks(u"\u2020\u0120", 2), 2);
  EXPECT_EQ(nlsTrimTrailingBlanks(nullptr, 0), 0);
  EXPECT_EQ(nlsTrimTrailingBlanks(nullptr, -3), 0);
  GuardedBuffer blanks(6, GuardedBuffer::At::start);
  auto* units = reinterpret_cast<char16_t*>(blanks.data());
  nlsFillWide(units, u' ', 3);
  EXPECT_EQ(nlsTrimTrailingBlanks(units, 3), 0);
}

}  // namespace
