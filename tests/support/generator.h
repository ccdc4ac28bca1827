// A table generator on a copy of the data that it reads, for tests of what it refuses.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/death.h"

namespace test {

// All bytes of a file; none if it can't be read.
std::string readFile(const std::filesystem::path& path);

class GeneratorCopy {
 public:
  // Copies `folder` of data/ and makes the folders into which the generator writes.
  GeneratorCopy(std::string program, std::string folder, std::vector<std::string> outputFolders);
  ~GeneratorCopy();
  GeneratorCopy(const GeneratorCopy&) = delete;
  GeneratorCopy& operator=(const GeneratorCopy&) = delete;

  // A file of the copied folder.
  std::filesystem::path data(const std::string& name) const { return root_ / "data" / folder_ / name; }
  // A file that the generator writes.
  std::filesystem::path out(const std::string& name) const { return root_ / "out" / name; }

  // Replaces the first occurrence of a text in a copied file; without one the running test fails.
  void replace(const std::string& name, const std::string& from, const std::string& to) const;
  void append(const std::string& name, const std::string& text) const;

  Ending run() const;

 private:
  std::string program_;
  std::string folder_;
  std::filesystem::path root_;
};

}  // namespace test
