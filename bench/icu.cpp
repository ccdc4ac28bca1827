#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/peers.h"

namespace bench {

namespace {

using Held = std::shared_ptr<UConverter>;

Held open(const Encoding& encoding) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(encoding.icuName, &error);
  if (U_FAILURE(error)) throw std::runtime_error(std::string("ICU has no converter ") + encoding.icuName);
  return {converter, ucnv_close};
}

bool is(const Encoding& encoding, const char* name) { return std::string(encoding.name) == name; }

const char* chars(Bytes bytes) { return reinterpret_cast<const char*>(bytes.data()); }
char* chars(Room room) { return reinterpret_cast<char*>(room.data()); }

// Pieces and room are not aligned for UTF-16 in general; x86-64, as ICU's own code assumes there, reads them all the
// same.
const UChar* units(Bytes bytes) { return reinterpret_cast<const UChar*>(bytes.data()); }
UChar* units(Room room) { return reinterpret_cast<UChar*>(room.data()); }
int32_t unitCount(size_t bytes) { return static_cast<int32_t>(bytes / sizeof(UChar)); }

Converter convertEx(const Encoding& from, const Encoding& to) {
  return makeConverter("ICU ucnv_convertEx",
                       [source = open(from), target = open(to)](Bytes input, Room output) -> size_t {
                         const char* in = chars(input);
                         char* out = chars(output);
                         UErrorCode error = U_ZERO_ERROR;
                         ucnv_convertEx(target.get(), source.get(), &out, out + output.size(), &in, in + input.size(),
                                        nullptr, nullptr, nullptr, nullptr, true, true, &error);
                         return U_SUCCESS(error) ? static_cast<size_t>(out - chars(output)) : 0;
                       });
}

Converter toUnicode(const Encoding& from) {
  return makeConverter("ICU ucnv_toUnicode", [source = open(from)](Bytes input, Room output) -> size_t {
    const char* in = chars(input);
    UChar* out = units(output);
    UErrorCode error = U_ZERO_ERROR;
    ucnv_toUnicode(source.get(), &out, out + unitCount(output.size()), &in, in + input.size(), nullptr, true, &error);
    return U_SUCCESS(error) ? static_cast<size_t>(out - units(output)) * sizeof(UChar) : 0;
  });
}

Converter fromUnicode(const Encoding& to) {
  return makeConverter("ICU ucnv_fromUnicode", [target = open(to)](Bytes input, Room output) -> size_t {
    const UChar* in = units(input);
    char* out = chars(output);
    UErrorCode error = U_ZERO_ERROR;
    ucnv_fromUnicode(target.get(), &out, out + output.size(), &in, in + unitCount(input.size()), nullptr, true, &error);
    return U_SUCCESS(error) ? static_cast<size_t>(out - chars(output)) : 0;
  });
}

Converter strFromUtf8() {
  return makeConverter("ICU u_strFromUTF8", [](Bytes input, Room output) -> size_t {
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(units(output), unitCount(output.size()), &length, chars(input), static_cast<int32_t>(input.size()),
                  &error);
    return U_SUCCESS(error) ? static_cast<size_t>(length) * sizeof(UChar) : 0;
  });
}

Converter strToUtf8() {
  return makeConverter("ICU u_strToUTF8", [](Bytes input, Room output) -> size_t {
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(chars(output), static_cast<int32_t>(output.size()), &length, units(input), unitCount(input.size()),
                &error);
    return U_SUCCESS(error) ? static_cast<size_t>(length) : 0;
  });
}

Converter strFromUtf32() {
  return makeConverter("ICU u_strFromUTF32", [](Bytes input, Room output) -> size_t {
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF32(units(output), unitCount(output.size()), &length, reinterpret_cast<const UChar32*>(input.data()),
                   static_cast<int32_t>(input.size() / sizeof(UChar32)), &error);
    return U_SUCCESS(error) ? static_cast<size_t>(length) * sizeof(UChar) : 0;
  });
}

Converter strToUtf32() {
  return makeConverter("ICU u_strToUTF32", [](Bytes input, Room output) -> size_t {
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF32(reinterpret_cast<UChar32*>(output.data()), static_cast<int32_t>(output.size() / sizeof(UChar32)),
                 &length, units(input), unitCount(input.size()), &error);
    return U_SUCCESS(error) ? static_cast<size_t>(length) * sizeof(UChar32) : 0;
  });
}

}  // namespace

std::vector<Converter> icuConverters(const Encoding& from, const Encoding& to) {
  if (from.icuName == nullptr || to.icuName == nullptr) return {};
  std::vector<Converter> found{convertEx(from, to)};
  if (is(to, "utf-16le")) {
    found.push_back(toUnicode(from));
    if (is(from, "utf-8")) found.push_back(strFromUtf8());
    if (is(from, "utf-32le")) found.push_back(strFromUtf32());
  }
  if (is(from, "utf-16le")) {
    found.push_back(fromUnicode(to));
    if (is(to, "utf-8")) found.push_back(strToUtf8());
    if (is(to, "utf-32le")) found.push_back(strToUtf32());
  }
  return found;
}

}  // namespace bench
