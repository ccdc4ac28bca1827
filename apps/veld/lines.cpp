#include "lines.h"

#include "input.h"

namespace veld {

void forEachInputLine(const std::function<void(const std::string& line)>& take) {
  Input input("-");
  std::string line;
  const auto end = [&] {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    take(line);
    line.clear();
  };
  while (input.fill()) {
    const Bytes bytes = input.bytes();
    for (const uint8_t byte : bytes) {
      if (byte == '\n') {
        end();
      } else {
        line += static_cast<char>(byte);
      }
    }
    input.take(bytes.size());
  }
  if (!line.empty()) end();
}

}  // namespace veld
