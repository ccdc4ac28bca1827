// Runs of single-byte routes: pipelines made by the setup slots themselves, also for pairs that a pipeline would copy,
// with input and output against guard pages.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

#include "support/guard.h"
#include "support/host.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace test {

using Bytes = std::vector<uint8_t>;

Bytes bytesOf(std::string_view text);
Bytes utf16(std::u16string_view text, bool bigEndian = false);
Bytes utf32(std::u32string_view text, bool bigEndian = false);

// What one call left behind. `output` is what it reported to have written.
struct Outcome {
  NlsStatus status = 0;
  Bytes output;
};

// A record that holds these bytes, at most as many as it has room for.
TranscodeProgress holding(std::span<const uint8_t> bytes);

inline constexpr TranscodeOptions dropBlanks{{NLS_ALLOW_BLANK_TRUNCATION, 0, 0, 0}};

class Route {
 public:
  Route(QZNLS* nls, CEI source, CEI target);
  Route(QZNLS* nls, const EncodingDescriptor& source, const EncodingDescriptor& target);
  ~Route();
  Route(const Route&) = delete;
  Route& operator=(const Route&) = delete;

  NlsStatus setup = 0;  // what the setup slot answered
  TranscodingPipeline pipeline{};

  // Each runs with the input ending at a guard page, the output as large as `capacity` ending at another, and fails the
  // test if bytes behind the reported output were touched.
  Outcome transcode(std::span<const uint8_t> input, uint32_t capacity, const TranscodeOptions* options = nullptr);
  Outcome resume(std::span<const uint8_t> input, uint32_t capacity, TranscodeProgress& progress,
                 const TranscodeOptions* options = nullptr);
  // With room for all.
  Outcome transcode(std::span<const uint8_t> input) { return transcode(input, roomy); }
  Outcome resume(std::span<const uint8_t> input, TranscodeProgress& progress) { return resume(input, roomy, progress); }

 private:
  static constexpr uint32_t roomy = 1024;

  void prepare(const EncodingDescriptor& source, const EncodingDescriptor& target);
  Outcome run(std::span<const uint8_t> input, uint32_t capacity, TranscodeProgress* progress,
              const TranscodeOptions* options);
};

// What a caller gets who feeds pieces of at most `piece` bytes with `room` bytes of output each, and goes on from
// `consumed` when the output was too small.
struct Whole {
  Bytes output;
  bool substituted = false;
  bool incomplete = false;  // the text ended inside a character
};
Whole stream(Route& route, std::span<const uint8_t> input, uint32_t piece, uint32_t room);

class SingleByteTest : public ::testing::Test {
 protected:
  NlsHost host{&VELDNLSLIB};
  QZNLS* nls = host.nls;

  void SetUp() override { ASSERT_NE(nls, nullptr); }
  const EncodingDescriptor& row(CEI cei) const;
};

}  // namespace test
