#include "support/generator.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace fs = std::filesystem;

namespace test {

namespace {

// Folders of links to the files of a folder.
void link(const fs::path& from, const fs::path& to) {
  fs::create_directories(to);
  for (const auto& entry : fs::directory_iterator(from)) {
    const fs::path target = to / entry.path().filename();
    if (entry.is_directory()) {
      link(entry.path(), target);
    } else {
      fs::create_symlink(entry.path(), target);
    }
  }
}

// All files in a folder, by path.
std::map<std::string, std::string> filesOf(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files[entry.path().string()] = readFile(entry.path());
  }
  return files;
}

}  // namespace

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

GeneratorCopy::GeneratorCopy(std::string program, std::string folder, std::vector<std::string> outputFolders,
                             Writes writes)
    : program_(std::move(program)), folder_(std::move(folder)), writes_(writes) {
  std::string pattern = (fs::temp_directory_path() / "veldnls_generator.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error(pattern + " can't be made");
  root_ = pattern;
  link(VELDNLS_SOURCE_DIR "/data", root_ / "data");
  for (const std::string& output : outputFolders) fs::create_directories(root_ / "out" / output);
}

GeneratorCopy::~GeneratorCopy() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void GeneratorCopy::write(const std::string& name, const std::string& text) const {
  fs::remove(data(name));
  std::ofstream(data(name), std::ios::binary) << text;
}

void GeneratorCopy::replace(const std::string& name, const std::string& from, const std::string& to) const {
  std::string text = readFile(data(name));
  const size_t at = text.find(from);
  if (at == std::string::npos) {
    ADD_FAILURE() << name << " has no \"" << from << "\"";
    return;
  }
  write(name, text.replace(at, from.size(), to));
}

void GeneratorCopy::append(const std::string& name, const std::string& text) const {
  write(name, readFile(data(name)) + text);
}

Ending GeneratorCopy::run() const {
  return runProgram({program_, "--data", (root_ / "data").string(), "--out", (root_ / "out").string()});
}

void GeneratorCopy::expectSameBytesTwice(const std::vector<std::string>& names) const {
  const Ending first = run();
  ASSERT_EQ(first.exitCode, 0) << first.errors;
  const auto files = filesOf(root_ / "out");
  for (const std::string& name : names) {
    const auto file = files.find(out(name).string());
    EXPECT_TRUE(file != files.end() && !file->second.empty()) << name;
  }
  ASSERT_EQ(run().exitCode, 0);
  EXPECT_TRUE(filesOf(root_ / "out") == files);
}

void GeneratorCopy::expectStop(const std::vector<std::string>& words) const {
  const Ending ending = run();
  EXPECT_EQ(ending.exitCode, 1) << ending.errors;
  for (const std::string& each : words) EXPECT_NE(ending.errors.find(each), std::string::npos) << ending.errors;
  if (writes_ == Writes::atTheEnd) {
    EXPECT_TRUE(filesOf(root_ / "out").empty());
  }
}

void GeneratorCopy::expectStopAt(const std::string& place, const std::string& sentence) const {
  expectStop({data(place).string() + ":", sentence});
}

void GeneratorCopy::expectBreach(const std::string& name, const std::string& from, const std::string& to,
                                 const std::string& sentence, const std::string& at) const {
  replace(name, from, to);
  expectStopAt(at.empty() ? name : at, sentence);
}

}  // namespace test
