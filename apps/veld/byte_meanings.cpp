#include "byte_meanings.h"

#include <numeric>

#include "character_form.h"
#include "names.h"
#include "pipeline.h"
#include "route.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint32_t lastSevenBitSet = 1;  // of the single-byte sets

char16_t meaningOfSingle(TranscodingPipeline& toUtf16, const EncodingDescriptor& row, uint8_t byte) {
  if (byte >= firstBeyondAscii && row.profile.singleByteSet <= lastSevenBitSet) return noMeaning;
  std::array<uint8_t, roomOfACharacter> output;
  const Converted converted = convertShort(toUtf16, Bytes(&byte, 1), output);
  if (!converted.whole || converted.size != utf16Unit) return noMeaning;
  const auto unit = static_cast<char16_t>(unitAt(output, 0, utf16Unit, ByteOrder::little));
  return unit == u' ' && byte != static_cast<uint8_t>(row.padChar) ? noMeaning : unit;
}

}  // namespace

std::optional<ByteMeanings> byteMeanings(QZNLS& nls, CEI cei) {
  const Pipeline pipeline = makePipeline(nls, cei, U_L_UNICODE_CE);
  if (pipeline == nullptr) return std::nullopt;
  ByteMeanings meanings{};
  if (isMultiByte(nls, cei)) {
    for (size_t byte = 0; byte < byteValues; ++byte) {
      meanings[byte] = meaningOfSingle(*pipeline, rowOf(nls, cei), static_cast<uint8_t>(byte));
    }
    return meanings;
  }
  std::array<uint8_t, byteValues> bytes;
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  const Converted converted =
      convertShort(*pipeline, bytes, {reinterpret_cast<uint8_t*>(meanings.data()), sizeof meanings});
  if (converted.size != sizeof meanings) return std::nullopt;
  return meanings;
}

}  // namespace veld
