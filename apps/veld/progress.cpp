#include "progress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace veld {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds silence(1000);
constexpr milliseconds betweenLines(1000);
constexpr milliseconds betweenRewrites(100);
constexpr const char* toLineStart = "\r\033[K";

std::optional<uint64_t> sizeOf(const std::vector<std::string>& files) {
  uint64_t total = 0;
  for (const std::string& file : files) {
    struct stat facts;
    const int result = file == "-" ? fstat(STDIN_FILENO, &facts) : stat(file.c_str(), &facts);
    if (result != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    total += static_cast<uint64_t>(facts.st_size);
  }
  return total;
}

std::string sizeText(double bytes) {
  static constexpr std::array<const char*, 5> units{"B", "kB", "MB", "GB", "TB"};
  size_t unit = 0;
  for (; bytes >= 1000 && unit + 1 < units.size(); ++unit) bytes /= 1000;
  std::ostringstream text;
  text << std::fixed << std::setprecision(unit == 0 ? 0 : 1) << bytes << ' ' << units[unit];
  return text.str();
}

std::string timeText(double seconds) {
  const auto whole = static_cast<uint64_t>(std::ceil(seconds));
  std::ostringstream text;
  text << std::setfill('0');
  if (whole >= 3600) text << whole / 3600 << ':' << std::setw(2);
  text << whole / 60 % 60 << ':' << std::setw(2) << whole % 60;
  return text.str();
}

}  // namespace

std::string progressText(uint64_t done, std::optional<uint64_t> total, double seconds) {
  const auto bytes = static_cast<double>(done);
  const double rate = seconds > 0 ? bytes / seconds : 0;
  const bool known = total && *total >= done && *total > 0;
  std::string text;
  if (known) text += std::to_string(static_cast<int>(100 * bytes / static_cast<double>(*total))) + " %, ";
  text += sizeText(bytes);
  if (known) text += " of " + sizeText(static_cast<double>(*total));
  text += ", " + sizeText(rate) + "/s";
  if (known && rate > 0) text += ", " + timeText(static_cast<double>(*total - done) / rate) + " left";
  return text;
}

Progress::Progress(When when, const std::vector<std::string>& files, bool writesToTerminal)
    : terminal_(isatty(STDERR_FILENO) != 0),
      asked_(when == When::always),
      on_(asked_ || (when == When::longInput && terminal_ && !writesToTerminal)),
      total_(on_ ? sizeOf(files) : std::nullopt),
      start_(Clock::now()),
      next_(start_ + silence) {}

void Progress::add(uint64_t bytes) {
  done_ += bytes;
  if (!on_) return;
  const Clock::time_point now = Clock::now();
  if (now >= next_) show(now);
}

void Progress::show(Clock::time_point now) {
  const std::chrono::duration<double> seconds = now - start_;
  std::cerr << (terminal_ ? toLineStart : "veld: ") << progressText(done_, total_, seconds.count());
  if (!terminal_) std::cerr << '\n';
  std::cerr.flush();
  shown_ = terminal_;
  next_ = now + (terminal_ ? betweenRewrites : betweenLines);
}

void Progress::clear() {
  if (shown_) std::cerr << toLineStart << std::flush;
  shown_ = false;
}

void Progress::finish() {
  if (!asked_) return clear();
  show(Clock::now());
  if (terminal_) std::cerr << '\n';
  shown_ = false;
}

}  // namespace veld
