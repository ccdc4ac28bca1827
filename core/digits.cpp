#include "core/digits.h"

#include <algorithm>
#include <bit>

#include "veldnls/status.h"

namespace veldnls {
namespace {

constexpr int limbBits = 32;
constexpr int mantissaBits = 53;
constexpr int maxIntegerBits = 1024;

// Digits are taken nine at a time, as many as a limb can hold.
constexpr int chunkDigits = 9;
constexpr uint32_t chunkBase = 1'000'000'000;

// The magnitude of a double: mantissa times two to the exponent. A value that isn't finite counts as zero.
struct Magnitude {
  uint64_t mantissa;
  int exponent;
};

Magnitude magnitudeOf(double value) {
  constexpr int storedBits = mantissaBits - 1;
  constexpr uint64_t hiddenBit = uint64_t{1} << storedBits;
  constexpr int exponentMask = 0x7FF;
  constexpr int exponentBias = maxFractionDigits + 1;  // of the mantissa read as an integer
  const auto bits = std::bit_cast<uint64_t>(value);
  const uint64_t stored = bits & (hiddenBit - 1);
  const int exponent = static_cast<int>(bits >> storedBits) & exponentMask;
  if (exponent == exponentMask) return {0, 0};
  if (exponent == 0) return {stored, 1 - exponentBias};
  return {stored | hiddenBit, exponent - exponentBias};
}

// Stores a mantissa, shifted left, in the three limbs where it lies; limbs stand least significant first.
void place(uint32_t* limbs, uint64_t mantissa, int shift) {
  const uint64_t low = (mantissa & UINT32_MAX) << shift % limbBits;
  const uint64_t high = (mantissa >> limbBits << shift % limbBits) + (low >> limbBits);
  limbs += shift / limbBits;
  limbs[0] = static_cast<uint32_t>(low);
  limbs[1] = static_cast<uint32_t>(high);
  limbs[2] = static_cast<uint32_t>(high >> limbBits);
}

// The integer part; its digits come from the least significant on.
class IntegerPart {
 public:
  explicit IntegerPart(const Magnitude& number) {
    if (number.exponent <= -mantissaBits) return;
    const int shift = std::max(number.exponent, 0);
    place(limbs_, number.mantissa >> (shift - number.exponent), shift);
    size_ = shift / limbBits + 3;
    dropZeros();
  }

  bool isZero() const { return size_ == 0; }

  // Divides by chunkBase and returns the remainder.
  uint32_t takeChunk() {
    uint64_t remainder = 0;
    for (int i = size_ - 1; i >= 0; --i) {
      const uint64_t dividend = remainder << limbBits | limbs_[i];
      limbs_[i] = static_cast<uint32_t>(dividend / chunkBase);
      remainder = dividend % chunkBase;
    }
    dropZeros();
    return static_cast<uint32_t>(remainder);
  }

 private:
  void dropZeros() {
    while (size_ > 0 && limbs_[size_ - 1] == 0) --size_;
  }

  uint32_t limbs_[maxIntegerBits / limbBits + 1] = {};  // one more, since place stores three
  int size_ = 0;                                        // limbs in use; the highest of them isn't zero
};

// The fraction, in fixed point: limbs below the point; its digits come from the most significant on.
class Fraction {
 public:
  explicit Fraction(const Magnitude& number) {
    if (number.exponent >= 0) return;
    const int bits = -number.exponent;
    const uint64_t mask = bits < mantissaBits ? (uint64_t{1} << bits) - 1 : UINT64_MAX;
    size_ = (bits + limbBits - 1) / limbBits;
    place(limbs_, number.mantissa & mask, size_ * limbBits - bits);
    dropZeros();
  }

  bool isZero() const { return lowest_ == size_; }

  // Multiplies by chunkBase and returns the integer part.
  uint32_t takeChunk() {
    uint64_t carry = 0;
    for (int i = lowest_; i < size_; ++i) {
      carry += uint64_t{limbs_[i]} * chunkBase;
      limbs_[i] = static_cast<uint32_t>(carry);
      carry >>= limbBits;
    }
    dropZeros();
    return static_cast<uint32_t>(carry);
  }

 private:
  void dropZeros() {
    while (lowest_ < size_ && limbs_[lowest_] == 0) ++lowest_;
  }

  uint32_t limbs_[(maxFractionDigits + limbBits - 1) / limbBits] = {};
  int size_ = 0;
  int lowest_ = 0;  // the limbs below are zero
};

}  // namespace

NlsStatus nlsIntegerDigits(double value, char16_t* output, int32_t capacity, int32_t* digitCount,
                           int32_t* trailingZeros) {
  IntegerPart number(magnitudeOf(value));
  int32_t count = 0;
  int32_t zeros = 0;
  bool trailing = trailingZeros != nullptr;
  while (!number.isZero()) {
    uint32_t chunk = number.takeChunk();
    const bool last = number.isZero();
    for (int i = 0; last ? chunk != 0 : i < chunkDigits; ++i, chunk /= 10) {
      trailing = trailing && chunk % 10 == 0;
      if (trailing) {
        ++zeros;
      } else {
        if (count < capacity) output[count] = digitUnit(chunk % 10);
        ++count;
      }
    }
  }
  *digitCount = count;
  if (trailingZeros != nullptr) *trailingZeros = zeros;
  if (count > std::max(capacity, 0)) return nlsDigitsOverflow;
  std::reverse(output, output + count);
  return 0;
}

NlsStatus nlsFractionDigits(double value, char16_t* output, int32_t capacity, int32_t* digitCount,
                            int32_t* leadingZeros) {
  int32_t count = 0;
  int32_t zeros = 0;
  bool leading = leadingZeros != nullptr;
  const Magnitude magnitude = magnitudeOf(value);
  Fraction fraction(magnitude);
  while (!fraction.isZero() && (leading || count < capacity)) {
    uint32_t chunk = fraction.takeChunk();
    const bool last = fraction.isZero();
    for (uint32_t unit = chunkBase / 10; last ? chunk != 0 : unit != 0; unit /= 10) {
      const uint32_t digit = chunk / unit;
      chunk %= unit;
      leading = leading && digit == 0;
      if (leading) {
        ++zeros;
      } else if (count < capacity) {
        output[count++] = digitUnit(digit);
      }
    }
  }
  if (magnitude.mantissa == 0) {
    if (capacity > 0) output[count++] = u'0';
  } else if (leadingZeros == nullptr) {
    while (count < capacity) output[count++] = u'0';
  } else {
    zeros += std::max(capacity - count, 0);
  }
  *digitCount = count;
  if (leadingZeros != nullptr) *leadingZeros = zeros;
  return 0;
}

}  // namespace veldnls
