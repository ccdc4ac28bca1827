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
  // Whether a generator writes when it has checked all that it reads, or each file when it has checked its part.
  enum class Writes { atTheEnd, fileByFile };

  // Takes over data/ and makes the folders into which the generator writes. Names of files of data/ are those below
  // `folder`, which may be empty.
  GeneratorCopy(std::string program, std::string folder, std::vector<std::string> outputFolders,
                Writes writes = Writes::atTheEnd);
  ~GeneratorCopy();
  GeneratorCopy(const GeneratorCopy&) = delete;
  GeneratorCopy& operator=(const GeneratorCopy&) = delete;

  // A file of the folder: a link to that of the tree, which mustn't be written, until one of the calls below has put
  // another in its place.
  std::filesystem::path data(const std::string& name) const { return root_ / "data" / folder_ / name; }
  // A file that the generator writes.
  std::filesystem::path out(const std::string& name) const { return root_ / "out" / name; }

  // Replaces the first occurrence of a text; without one the running test fails.
  void replace(const std::string& name, const std::string& from, const std::string& to) const;
  void append(const std::string& name, const std::string& text) const;
  // Makes a file, or another one in its place.
  void write(const std::string& name, const std::string& text) const;

  Ending run() const;

  // The generator makes these files, and the same bytes when it runs again.
  void expectSameBytesTwice(const std::vector<std::string>& names) const;

  // The generator stops with all of these words; one that writes at the end has written nothing.
  void expectStop(const std::vector<std::string>& words) const;
  // It stops with this sentence, at a place of the folder: a file or "file:line".
  void expectStopAt(const std::string& place, const std::string& sentence) const;
  // It does so after a replacement, at the place `at`; without one, anywhere in the file.
  void expectBreach(const std::string& name, const std::string& from, const std::string& to,
                    const std::string& sentence, const std::string& at = "") const;

 private:
  std::string program_;
  std::string folder_;
  Writes writes_;
  std::filesystem::path root_;
};

}  // namespace test
