// Integers of up to 4,096 bits: room for the 801 digits that a decimal number is cut to, and for the halfway point of
// two doubles that they are compared with.
#pragma once

#include <array>

#include "locale/numbers/binary_double.h"
#include "locale/numbers/decimal_text.h"

namespace veldnls {

class LongInteger {
 public:
  explicit LongInteger(uint64_t value) : limbs_{value}, size_(value == 0 ? 0 : 1) {}

  void multiplyAndAdd(uint64_t factor, uint64_t addend) {
    uint64_t carry = addend;
    for (int i = 0; i < size_; ++i) {
      const UInt128 product = UInt128{limb(i)} * factor + carry;
      limb(i) = static_cast<uint64_t>(product);
      carry = static_cast<uint64_t>(product >> limbBits);
    }
    if (carry != 0) limb(size_++) = carry;
  }

  void multiplyByPowerOfTen(int32_t n) {
    for (; n > maxIntegerPower; n -= maxIntegerPower) multiplyAndAdd(integerPowersOfTen[maxIntegerPower], 0);
    if (n > 0) multiplyAndAdd(integerPowersOfTen[static_cast<size_t>(n)], 0);
  }

  void multiplyByPowerOfTwo(int32_t n) {
    for (; n >= limbBits; n -= limbBits - 1) multiplyAndAdd(uint64_t{1} << (limbBits - 1), 0);
    if (n > 0) multiplyAndAdd(uint64_t{1} << n, 0);
  }

  // Below 0, 0 or above 0.
  int compare(const LongInteger& other) const {
    if (size_ != other.size_) return size_ < other.size_ ? -1 : 1;
    for (int i = size_ - 1; i >= 0; --i) {
      if (limb(i) != other.limb(i)) return limb(i) < other.limb(i) ? -1 : 1;
    }
    return 0;
  }

 private:
  static constexpr int limbBits = 64;

  uint64_t& limb(int i) { return limbs_[static_cast<size_t>(i)]; }
  uint64_t limb(int i) const { return limbs_[static_cast<size_t>(i)]; }

  std::array<uint64_t, 64> limbs_;  // least significant first; those from size_ on aren't set
  int size_;                        // the highest limb isn't zero
};

}  // namespace veldnls
