// What all table generators share: reading the text files of data/ line by line, and stopping with a sentence that
// names the file, the line and the cure.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace gen {

// Where a fact stands; line 0 means the file as a whole.
struct Place {
  std::string file;
  int line = 0;
};

// Prints "file:line: message" to standard error and exits with 1.
[[noreturn]] void fail(const Place& place, const std::string& message);

// Fails with `message` unless `holds`.
void require(bool holds, const Place& place, const std::string& message);

// A line of a data file, split at tabs.
struct Line {
  Place place;
  std::vector<std::string> fields;
  const std::string& field(size_t index) const;  // fails when the line has too few fields
};

// Lines of a file, without those that are empty or begin with "#". Fields are split at tabs and not trimmed, so a field
// of blanks stays. Fails if the file can't be read, is not UTF-8, or has a carriage return.
std::vector<Line> readLines(const std::string& path);

// Numbers; fail at the line's place when the text is no such number or is out of range.
uint32_t parseHex(const Line& line, std::string_view text, uint32_t maximum);  // with or without "0x" or "U+"
int64_t parseDecimal(const Line& line, std::string_view text, int64_t minimum, int64_t maximum);

// Fails unless the line has this many fields.
void requireFields(const Line& line, size_t expected);

// Fails unless a file holds this many of what it lists: "has 229 rows; it must have 230".
void requireCount(const std::string& path, size_t count, size_t expected, const std::string& what);

// ASCII letters to upper case.
std::string upperCase(std::string_view text);

// UTF-8 to UTF-16; fails at `place` on malformed text.
std::u16string toUtf16(const Place& place, std::string_view utf8);

// Splits at a character; an empty text gives no parts.
std::vector<std::string> split(std::string_view text, char separator);

// A generated file, written at once by `save`. The same calls give the same bytes.
class Output {
 public:
  explicit Output(std::string path);
  Output& operator<<(std::string_view text);
  Output& operator<<(int64_t number);
  // Array elements with wrapped lines: calls `element(i)` for the text of each.
  void list(size_t count, const std::function<std::string(size_t)>& element);
  void save() const;

 private:
  std::string path_;
  std::string text_;
};

// `--data DIR --out DIR`; other arguments are usage errors.
struct Arguments {
  std::string data;
  std::string out;
};
Arguments parseArguments(int count, char** values);

// "0x" and upper-case hexadecimal digits, at least `digits` of them.
std::string hex(uint64_t value, int digits);

}  // namespace gen
