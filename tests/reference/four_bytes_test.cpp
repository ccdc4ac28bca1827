// All texts of four bytes through the decoders of UTF-8: every status, count, flag and byte.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <thread>

#include "reference/reference.h"

namespace transcode_test {

namespace {

constexpr size_t textSize = 4;
constexpr size_t roomSize = 4 * textSize;

struct Answer {
  NlsStatus status = 0;
  uint32_t written = 0;
  uint32_t consumed = textSize;
  bool substituted = false;
  uint32_t held = 0;
  uint8_t bytes[roomSize] = {};
};

void put(Answer& answer, uint32_t value, size_t size) {
  for (size_t i = 0; i < size; ++i) answer.bytes[answer.written++] = static_cast<uint8_t>(value >> (8 * i));
}

void replace(Answer& answer, size_t unit) {
  answer.status = nlsSubstituted;
  answer.substituted = true;
  put(answer, 0xFFFD, unit);
}

void write16(Answer& answer, uint32_t value) {
  if (value > 0x10FFFF) {
    replace(answer, 2);
  } else if (value >= 0x10000 && value < 0x100000) {
    put(answer, 0xD7C0 + value / 1024, 2);
    put(answer, 0xDC00 + value % 1024, 2);
  } else {
    put(answer, value % 0x10000, 2);
  }
}

void write32(Answer& answer, uint32_t value) { put(answer, value, 4); }

template <size_t unit, void (*write)(Answer&, uint32_t)>
Answer answerTo(Span text) {
  Answer answer;
  size_t at = 0;
  while (at < text.size()) {
    const Character character = nextUtf8(text.subspan(at));
    if (character.length == 0) {
      answer.status = nlsIncompleteInput;
      answer.held = static_cast<uint32_t>(text.size() - at);
      break;
    }
    if (character.value.has_value()) {
      write(answer, *character.value);
    } else {
      replace(answer, unit);
    }
    at += character.length;
  }
  return answer;
}

bool agrees(TranscodingPipeline* pipeline, const uint8_t* text, const Answer& wanted) {
  TranscodeProgress progress{};
  uint8_t output[roomSize];
  uint32_t written = 0;
  const NlsStatus status =
      pipeline->transcodeResumable(pipeline, text, textSize, output, roomSize, &written, &progress, nullptr);
  return status == wanted.status && written == wanted.written && std::memcmp(output, wanted.bytes, written) == 0 &&
         progress.consumed == wanted.consumed &&
         progress.flags == (wanted.substituted ? NLS_PROGRESS_SUBSTITUTED : 0) &&
         progress.pending == (wanted.held != 0 ? 1 : 0) && progress.heldCount == wanted.held &&
         std::memcmp(progress.held, text + textSize - wanted.held, wanted.held) == 0;
}

class FourBytes {
 public:
  // Takes one lead byte after the other until none is left.
  void work() {
    for (uint32_t lead = next_++; lead < 0x100 && !failed_; lead = next_++) {
      for (uint32_t rest = 0; rest < 0x1000000; ++rest) {
        const uint8_t text[textSize] = {static_cast<uint8_t>(lead), static_cast<uint8_t>(rest >> 16),
                                        static_cast<uint8_t>(rest >> 8), static_cast<uint8_t>(rest)};
        if (!agrees(to16_, text, answerTo<2, write16>(text))) return fail(text, "UTF-16");
        if (!agrees(to32_, text, answerTo<4, write32>(text))) return fail(text, "UTF-32");
      }
    }
  }

  const std::string& failure() const { return failure_; }

 private:
  void fail(Span text, const char* target) {
    const std::scoped_lock lock(mutex_);
    failed_ = true;
    failure_ += test::toHex(text) + " to " + target + "\n";
  }

  Pipeline to16_{U_UTF8_CE, U_L_UNICODE_CE};
  Pipeline to32_{U_UTF8_CE, U_L_UCS4_CE};
  std::atomic<uint32_t> next_ = 0;
  std::atomic<bool> failed_ = false;
  std::mutex mutex_;
  std::string failure_;
};

TEST(Utf8Decoders, AllTextsOfFourBytes) {
  FourBytes all;
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
    threads.emplace_back([&all] { all.work(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(all.failure(), "");
}

}  // namespace

}  // namespace transcode_test
