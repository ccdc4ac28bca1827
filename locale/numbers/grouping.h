// Group separators among the digits of an integer part.
#pragma once

#include "veldnls/locale_record.h"

namespace veldnls {

// Group sizes of an integer, from the right: the digits of a text as "3;2", of which the last repeats. "-" ends the
// groups.
class GroupSizes {
 public:
  GroupSizes() : sizes_{-1} {}  // no groups
  explicit GroupSizes(const LocaleNumber& locale);

  // How many digits stand in the current group, or no groups from here on if it isn't positive.
  int32_t current() const { return sizes_[place_]; }
  void next() {
    if (place_ + 1 < count_) ++place_;
  }

 private:
  int8_t sizes_[60];
  int32_t count_ = 0;
  int32_t place_ = 0;
};

// The size that most locales have.
inline constexpr int32_t thousandsSize = 3;

// Group sizes of an integer by name: none, three, three and then two each, or any.
enum class Grouping { none, thousands, lakhs, other };

inline Grouping groupingOf(const LocaleNumber& locale) {
  const NlsText60& text = locale.numberGrouping;
  if (text.text[0] != u'3') return Grouping::other;
  if (text.count == 1) return Grouping::thousands;
  return text.count == 3 && text.text[1] == u';' && text.text[2] == u'2' ? Grouping::lakhs : Grouping::other;
}

// The one group size of a double: that of a text of one number, and 3 for any other, as "3;2". Not positive if there
// are no groups.
int32_t groupSize(const LocaleNumber& locale);

// Separators among `count` digits.
int32_t countSeparators(int32_t count, int32_t size);

// Copies digits with separators between the groups; returns the end of what was written.
char16_t* copyGrouped(const char16_t* digits, int32_t count, int32_t size, char16_t separator, char16_t* out);

}  // namespace veldnls
