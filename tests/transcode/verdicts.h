// What the slot validateEncodedText says of a text that ends at a guard page.
#pragma once

#include <ostream>

#include "transcode/harness.h"

namespace transcode_test {

struct Verdict {
  NlsStatus status;
  int32_t offset;
  bool operator==(const Verdict&) const = default;
};

inline void PrintTo(const Verdict& verdict, std::ostream* stream) {
  *stream << std::hex << "status " << verdict.status << std::dec << ", offset " << verdict.offset;
}

inline constexpr Verdict valid{0, -1};
inline constexpr Verdict refused{nlsUnknownEncoding, -1};
constexpr Verdict faultAt(int64_t offset) { return {nlsInvalidCharacter, static_cast<int32_t>(offset)}; }

// With and without an offset, which have one status.
Verdict verdictOf(CEI cei, Span text);
inline Verdict verdictOf(CEI cei, std::string_view text) { return verdictOf(cei, hex(text)); }

// Rows that can't be validated. Numbers outside of the table can't either.
bool isRefused(CEI cei);

}  // namespace transcode_test
