#include <algorithm>
#include <bit>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "locale/numbers_oracle.h"

namespace oracle {
namespace {

// Decimal numbers, the lowest digits first, nine to a limb.
using Big = std::vector<uint32_t>;
constexpr uint64_t limbBase = 1'000'000'000;

void multiply(Big& number, uint32_t factor) {
  uint64_t carry = 0;
  for (uint32_t& limb : number) {
    carry += uint64_t{limb} * factor;
    limb = static_cast<uint32_t>(carry % limbBase);
    carry /= limbBase;
  }
  if (carry != 0) number.push_back(static_cast<uint32_t>(carry));
}

void multiplyOften(Big& number, uint32_t factor, int times) {
  for (; times > 0; --times) multiply(number, factor);
}

Big bigOf(const std::string& digits) {
  Big number;
  for (size_t end = digits.size(); end > 0; end -= std::min<size_t>(end, 9)) {
    const size_t start = end > 9 ? end - 9 : 0;
    number.push_back(static_cast<uint32_t>(std::stoul(digits.substr(start, end - start))));
  }
  while (!number.empty() && number.back() == 0) number.pop_back();
  return number;
}

std::string textOf(const Big& number) {
  std::string text;
  for (auto limb = number.rbegin(); limb != number.rend(); ++limb) {
    const std::string part = std::to_string(*limb);
    text += text.empty() ? part : std::string(9 - part.size(), '0') + part;
  }
  return text == "0" ? "" : text;
}

struct Binary {
  uint64_t mantissa;
  int exponent;  // of its last bit, at least that of the smallest double
};

Binary binaryOf(double value) {
  int exponent = 0;
  std::frexp(std::fabs(value), &exponent);
  exponent = std::max(exponent - 53, -1074);
  return {static_cast<uint64_t>(std::ldexp(std::fabs(value), -exponent)), exponent};
}

// The digits of mantissa * 2^exponent.
Exact expand(uint64_t mantissa, int exponent) {
  Big number = bigOf(std::to_string(mantissa));
  if (exponent >= 0) {
    multiplyOften(number, 2, exponent);
    return {textOf(number), ""};
  }
  // m / 2^n is m * 5^n / 10^n.
  const int places = -exponent;
  multiplyOften(number, 5, places);
  std::string text = textOf(number);
  if (text.size() < static_cast<size_t>(places)) text.insert(0, static_cast<size_t>(places) - text.size(), '0');
  const size_t point = text.size() - static_cast<size_t>(places);
  std::string fraction = text.substr(point);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return {text.substr(0, point), fraction};
}

int compare(const Big& a, const Big& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (size_t i = a.size(); i-- > 0;) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return 0;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Result& result) {
  out << "{" << std::hex << result.status << std::dec << ", " << result.length << ", \"";
  for (const char16_t unit : result.units) {
    if (unit == untouched) {
      out << '~';
    } else if (unit >= 0x20 && unit < 0x7F) {
      out << static_cast<char>(unit);
    } else {
      out << "<" << std::hex << static_cast<unsigned>(unit) << std::dec << ">";
    }
  }
  return out << "\"}";
}

Exact exactDigits(double value) {
  // Tests ask for the same values again and again.
  static std::unordered_map<uint64_t, Exact> known;
  if (known.size() > 10000) known.clear();
  const auto [place, isNew] = known.try_emplace(std::bit_cast<uint64_t>(value));
  const Binary binary = binaryOf(value);
  if (isNew) place->second = expand(binary.mantissa, binary.exponent);
  return place->second;
}

Exact halfwayAbove(double value) {
  const Binary binary = binaryOf(value);
  return expand(2 * binary.mantissa + 1, binary.exponent - 1);
}

double nearestDouble(const std::string& digits, int exponent) {
  // The order of mantissa * 2^power and the number.
  const auto order = [&](uint64_t mantissa, int power) {
    Big left = bigOf(std::to_string(mantissa));
    Big right = bigOf(digits);
    multiplyOften(power < 0 ? right : left, 2, std::abs(power));
    multiplyOften(exponent < 0 ? left : right, 10, std::abs(exponent));
    return compare(left, right);
  };
  // The largest double that isn't above the number, by bisection: doubles are ordered as their bits are.
  uint64_t low = 0;
  uint64_t high = 0x7FF0000000000000;
  while (high - low > 1) {
    const uint64_t middle = low + (high - low) / 2;
    const Binary binary = binaryOf(std::bit_cast<double>(middle));
    (order(binary.mantissa, binary.exponent) > 0 ? high : low) = middle;
  }
  const Binary binary = binaryOf(std::bit_cast<double>(low));
  const int half = order(2 * binary.mantissa + 1, binary.exponent - 1);
  if (half < 0 || (half == 0 && low % 2 != 0)) ++low;
  return std::bit_cast<double>(low);
}

}  // namespace oracle
