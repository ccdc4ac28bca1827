#include "source_encoding.h"

#include <algorithm>
#include <string_view>

#include "names.h"
#include "route.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr size_t markSize = 2;  // of a byte order mark

bool isUtf16(const std::string& name) {
  const std::string_view wanted = "utf-16";
  return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

}  // namespace

SourceEncoding::SourceEncoding(QZNLS& nls, const std::string& name)
    : cei_(resolveEncoding(nls, findEncoding(nls, name))), marked_(isUtf16(name)) {}

CEI SourceEncoding::begin(Input& input) const {
  if (!marked_) return cei_;
  while (input.bytes().size() < markSize && input.fill()) {
  }
  const Bytes start = input.bytes();
  if (start.size() < markSize) return U_L_UNICODE_CE;
  const bool little = start[0] == 0xFF && start[1] == 0xFE;
  const bool big = start[0] == 0xFE && start[1] == 0xFF;
  if (little || big) input.take(markSize);
  return big ? U_B_UNICODE_CE : U_L_UNICODE_CE;
}

}  // namespace veld
