#include "text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace gen {

void fail(const Place& place, const std::string& message) {
  if (place.line > 0) {
    std::fprintf(stderr, "%s:%d: %s\n", place.file.c_str(), place.line, message.c_str());
  } else {
    std::fprintf(stderr, "%s: %s\n", place.file.c_str(), message.c_str());
  }
  std::exit(1);
}

void require(bool holds, const Place& place, const std::string& message) {
  if (!holds) fail(place, message);
}

const std::string& Line::field(size_t index) const {
  require(index < fields.size(), place, "the line has too few fields; add field " + std::to_string(index + 1));
  return fields[index];
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  size_t start = 0;
  for (;;) {
    const size_t end = text.find(separator, start);
    if (end == std::string_view::npos) break;
    parts.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  parts.emplace_back(text.substr(start));
  return parts;
}

std::vector<Line> readLines(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  require(file.is_open(), {path, 0}, "can't be opened; run the generator through the build, or give --data");
  std::vector<Line> lines;
  std::string text;
  for (int number = 1; std::getline(file, text); ++number) {
    const Place place{path, number};
    require(text.find('\r') == std::string::npos, place, "has a carriage return; lines end with a line feed only");
    if (text.empty() || text[0] == '#') continue;
    toUtf16(place, text);
    lines.push_back({place, split(text, '\t')});
  }
  return lines;
}

uint32_t parseHex(const Line& line, std::string_view text, uint32_t maximum) {
  if (text.starts_with("0x") || text.starts_with("U+")) text.remove_prefix(2);
  require(!text.empty() && text.size() <= 8, line.place, "expected a hexadecimal number of up to 8 digits");
  uint64_t value = 0;
  for (const char c : text) {
    uint32_t digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<uint32_t>(c - '0');
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<uint32_t>(c - 'A') + 10;
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<uint32_t>(c - 'a') + 10;
    } else {
      fail(line.place, "not a hexadecimal number: " + std::string(text));
    }
    value = value * 16 + digit;
  }
  require(value <= maximum, line.place, "number above " + hex(maximum, 1) + ": " + std::string(text));
  return static_cast<uint32_t>(value);
}

int64_t parseDecimal(const Line& line, std::string_view text, int64_t minimum, int64_t maximum) {
  const std::string copy(text);
  char* end = nullptr;
  const long long value = std::strtoll(copy.c_str(), &end, 10);
  require(!copy.empty() && *end == '\0', line.place, "not a decimal number: \"" + copy + "\"");
  require(value >= minimum && value <= maximum, line.place,
          "number outside " + std::to_string(minimum) + " to " + std::to_string(maximum) + ": " + copy);
  return value;
}

void requireFields(const Line& line, size_t expected) {
  require(line.fields.size() == expected, line.place,
          "has " + std::to_string(line.fields.size()) + " fields; it must have " + std::to_string(expected) +
              ", separated by tabs");
}

void requireCount(const std::string& path, size_t count, size_t expected, const std::string& what) {
  require(count == expected, {path, 0},
          "has " + std::to_string(count) + " " + what + "; it must have " + std::to_string(expected));
}

std::string upperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

std::u16string toUtf16(const Place& place, std::string_view utf8) {
  std::u16string out;
  for (size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    require(length != 0 && i + length <= utf8.size(), place, "malformed UTF-8");
    uint32_t value = length == 1 ? lead : lead & (0x7Fu >> length);
    for (size_t k = 1; k < length; ++k) {
      const auto trail = static_cast<unsigned char>(utf8[i + k]);
      require((trail & 0xC0) == 0x80, place, "malformed UTF-8");
      value = value << 6 | (trail & 0x3Fu);
    }
    if (value >= 0x10000) {
      value -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (value >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (value & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(value));
    }
    i += length;
  }
  return out;
}

Output::Output(std::string path) : path_(std::move(path)) {}

Output& Output::operator<<(std::string_view text) {
  text_ += text;
  return *this;
}

Output& Output::operator<<(int64_t number) {
  text_ += std::to_string(number);
  return *this;
}

void Output::list(size_t count, const std::function<std::string(size_t)>& element) {
  size_t width = 0;
  for (size_t i = 0; i < count; ++i) {
    const std::string text = element(i) + ",";
    if (width + text.size() > 118) {
      text_ += '\n';
      width = 0;
    }
    text_ += text;
    width += text.size();
  }
  text_ += '\n';
}

void Output::save() const {
  std::ofstream file(path_, std::ios::binary | std::ios::trunc);
  file << text_;
  file.flush();
  require(file.good(), {path_, 0}, "can't be written; check the build folder");
}

Arguments parseArguments(int count, char** values) {
  Arguments arguments;
  for (int i = 1; i + 1 < count; i += 2) {
    const std::string_view name = values[i];
    if (name == "--data") {
      arguments.data = values[i + 1];
    } else if (name == "--out") {
      arguments.out = values[i + 1];
    }
  }
  if (count != 5 || arguments.data.empty() || arguments.out.empty()) {
    std::fprintf(stderr, "usage: %s --data DIR --out DIR\n", values[0]);
    std::exit(2);
  }
  return arguments;
}

std::string hex(uint64_t value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*llX", digits, static_cast<unsigned long long>(value));
  return text;
}

}  // namespace gen
