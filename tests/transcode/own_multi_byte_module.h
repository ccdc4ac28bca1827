// A multi-byte module of the tests' own, in the place of the library's: it tells which setup a pair calls, and its
// stages convert an encoding of their own.
//
// In that encoding bytes below 0x80 are themselves; any other byte leads a two-byte character, U+4E00 plus its low
// seven bits times 256 plus the second byte. From Unicode everything else becomes "?", with a substitution.
#pragma once

#include <string>
#include <vector>

#include "transcode/harness.h"

namespace transcode_test {

// How the last stage was called.
struct StageCall {
  const CodePageModule* module = nullptr;
  const PipelineSide* side = nullptr;
  uint32_t option = 0;
  int count = 0;
};
extern StageCall lastCall;

// The stages. The one to UTF-16 leaves `consumed` ahead of an incomplete character and holds nothing.
NlsStatus toUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                         void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                         const TranscodeOptions* options);
NlsStatus fromUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                           void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                           const TranscodeOptions* options);

// Names of the setup slots that ran, in order, and their arguments.
struct SetupCall {
  std::string slot;
  const PipelineSide* side;
  CEI source;
  CEI target;
};
extern std::vector<SetupCall> setups;
// The slot that fails.
extern std::string refusedSlot;

inline constexpr char byteToMultibyte[] = "byteToMultibyte";
inline constexpr char multibyteToByte[] = "multibyteToByte";
inline constexpr char utf16ToMultibyte[] = "utf16ToMultibyte";
inline constexpr char multibyteToUtf16[] = "multibyteToUtf16";
inline constexpr char utf32ToMultibyte[] = "utf32ToMultibyte";
inline constexpr char multibyteToUtf32[] = "multibyteToUtf32";
inline constexpr char utf8ToMultibyte[] = "utf8ToMultibyte";
inline constexpr char multibyteToUtf8[] = "multibyteToUtf8";
inline constexpr char utfeToMultibyte[] = "utfeToMultibyte";
inline constexpr char multibyteToUtfe[] = "multibyteToUtfe";

// While one of these tests runs, the object has the module.
class MultiByte : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override { nls()->multiByteModule = loaded_; }

  MultiByteModule module_;
  MultiByteModule* loaded_ = nullptr;
};

}  // namespace transcode_test
