#include "locale/numbers_oracle_double.h"

#include <algorithm>
#include <cmath>

#include "veldnls/status.h"

namespace oracle {
namespace {

constexpr double tenth = 0.10000000000000002;

double powerOfTen(int n) {
  const double table[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
  const int magnitude = std::abs(n);
  double power = magnitude <= 8 ? table[magnitude] : table[magnitude % 8];
  if (magnitude > 8) {
    double square = 1e8;
    for (int rest = magnitude / 8; rest != 0; rest /= 2) {
      if (rest % 2 != 0) power *= square;
      square *= square;
    }
  }
  return n < 0 ? 1 / power : power;
}

int expLength(int x) { return 1 + (x < 0 ? 1 : 0) + decimalLength(x); }

// A number below 1 and its power of ten, and how both stand in a field.
struct ExponentForm {
  double m = 0;
  int x = 0;  // one less than the power: of the first digit
  int precision;
  int width;
  int start = 0;  // of the text in the field
  int digits = 0;
  int expLen = 0;
  bool point = true;
  uint32_t status = 0;

  void scaleDown() {
    m *= tenth;
    ++x;
  }
  // Adds half of the last digit. Returns whether there is one digit more now, which is taken off again.
  bool roundsUp(bool always) {
    if (digits < 15 || always) m += 0.5 / powerOfTen(digits);
    m *= 1.0000000000000018;
    if (m < 1) return false;
    scaleDown();
    return true;
  }
};

void scale(double value, ExponentForm& form) {
  const int binary = binaryExponent(value);
  double& m = form.m;
  int& x = form.x;
  if (binary < 0) {
    x = std::max(-shifted(binary * -77 + 255, 8), -308);
    m = value * powerOfTen(-x);
    if (m >= 1) form.scaleDown();
  } else {
    x = shifted(binary * 77, 8) + 1;
    m = binary < 308 ? value / powerOfTen(x) : value / powerOfTen(x - 1) / 10;
  }
  if (m < tenth && value != powerOfTen(x - 1)) {
    if (value == 0) {
      x = 1;
    } else {
      m *= 10;
      --x;
    }
  }
  --x;
}

// With a precision below 0: so many digits and one more, if the field is wide enough. With less than one digit the form
// of a free precision follows.
void fitGivenDigits(ExponentForm& form) {
  const int wanted = 1 - form.precision;
  form.expLen = form.x >= -99 && form.x <= 99 ? 4 : 5;
  form.digits = form.width - form.expLen - 1;
  if (form.digits > wanted) {
    form.start = form.digits - wanted;
    form.width -= form.start;
    form.digits = wanted;
  } else if (form.digits < wanted) {
    form.status = nlsDigitsLost;
  }
  if (form.digits > 0 && form.roundsUp(form.m == 0) && form.x == 100) {
    ++form.expLen;
    --form.digits;
  }
  if (form.digits < 1) form.precision = 99;
}

// A field of few digits does without the point: all of them are ahead of it.
void leaveOutPoint(ExponentForm& form) {
  form.point = false;
  form.x -= form.digits - 1;
  form.expLen = expLength(form.x);
  if (form.width < form.expLen + form.digits) {
    --form.digits;
    ++form.x;
    form.expLen = expLength(form.x);
  }
  if (expLength(form.x - 1) < form.expLen) {
    --form.x;
    --form.expLen;
    ++form.digits;
  }
}

// As many digits as the field has room for. Returns false if it has none.
bool fitWidth(ExponentForm& form) {
  form.expLen = expLength(form.x);
  form.digits = form.width - form.expLen;
  if (form.digits < 1) return false;
  if (form.digits < 4) {
    leaveOutPoint(form);
  } else {
    --form.digits;
  }
  if (form.digits > 0 && form.roundsUp(false)) {
    const int change = expLength(form.x) - form.expLen;
    form.expLen += change;
    form.digits -= change;
    if (!form.point) form.x += change;
  }
  return form.digits >= 1;
}

// The digits, of which doubles give fourteen. With a free precision zeros at the end go.
std::string takeDigits(ExponentForm& form) {
  std::string taken = exactDigits(form.m).fraction;
  taken.resize(static_cast<size_t>(std::min(form.digits, 14)), '0');
  if (form.precision > 0) {
    while (taken.size() > 1 && taken.back() == '0') taken.pop_back();
    const int left = static_cast<int>(taken.size());
    if (!form.point) {
      form.x += form.digits - left;
      form.expLen = expLength(form.x);
    }
    if (left == 1) form.point = false;
    form.digits = left;
  }
  taken.resize(static_cast<size_t>(form.digits), '0');
  return taken;
}

// From "E" on. A precision below 0 has two digits at least, and one up to 32 the plus sign.
std::u16string exponentOf(const ExponentForm& form) {
  std::u16string text = u"E";
  if (form.x < 0) {
    text += u'-';
  } else if (form.precision < 33) {
    text += u'+';
  }
  const int magnitude = std::abs(form.x);
  if (form.precision < 0 && magnitude < 10) text += u'0';
  return text + wide(std::to_string(magnitude));
}

}  // namespace

uint32_t exponentField(const Signs& signs, Field& out, bool negative, int width, int precision, double value) {
  ExponentForm form{.precision = precision, .width = width};
  scale(value, form);
  if (form.precision < 0) fitGivenDigits(form);
  if (form.precision > 0 && !fitWidth(form)) return nlsFieldTooNarrow;
  const std::u16string digits = wide(takeDigits(form));
  std::u16string text = negative ? u"-" : u"";
  text += digits[0];
  if (form.point) text += signs.point;
  text += digits.substr(1);
  text += exponentOf(form);
  int at = form.start + form.width - form.digits - 1 - form.expLen + (form.point ? 0 : 1);
  for (const char16_t unit : text) out[at++] = unit;
  return form.status;
}

}  // namespace oracle
