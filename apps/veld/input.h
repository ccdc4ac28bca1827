// A file read in blocks.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "chain.h"
#include "failure.h"

namespace veld {

// What to call a file in a sentence.
std::string inputName(const std::string& path);
// What to tell of one that can't be opened.
Failure inputFailure(const std::string& path, int error);

class Input {
 public:
  // Opens a file; "-" is standard input. Throws Failure.
  explicit Input(const std::string& path);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  // What to call the file in a sentence.
  const std::string& name() const { return name_; }

  // Reads more behind the bytes that are left, up to blockSize in all, as soon as any come. False at the end of the
  // file. Throws Failure.
  bool fill();
  // The bytes read and not yet taken.
  Bytes bytes() const { return Bytes(buffer_).subspan(start_, end_ - start_); }
  void take(size_t count);
  // The place in the file of the first of bytes().
  uint64_t offset() const { return offset_; }

 private:
  std::string name_;
  int file_;
  std::vector<uint8_t> buffer_;
  size_t start_ = 0;
  size_t end_ = 0;
  uint64_t offset_ = 0;
};

}  // namespace veld
