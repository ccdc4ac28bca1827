// What "veld format" writes and "veld parse" reads, and how a value and what is wrong with a text are held.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "veldnls/types.h"

namespace veld {

enum class Kind { number, integer, hex, octal, money, percent, date, time, dateTime };

inline bool isDateKind(Kind kind) { return kind == Kind::date || kind == Kind::time || kind == Kind::dateTime; }

// A value of a kind.
struct Value {
  double number = 0;     // number, money, percent (1 is 100 %); seconds of a time or datetime
  int64_t integer = 0;   // integer
  uint64_t natural = 0;  // hex, octal
  uint32_t month = 0;    // date
  uint32_t day = 0;
  uint32_t year = 0;
};

// Why a text or value is no good.
struct Fault {
  NlsStatus status = 0;              // 0 where the library has none for it
  std::string reason;                // a few words
  std::optional<size_t> place = {};  // the unit of the text at which it shows
};

// What holds for a status wherever it comes from.
Fault faultOf(NlsStatus status);

}  // namespace veld
