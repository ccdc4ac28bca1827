#include "support/generator.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace test {

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

GeneratorCopy::GeneratorCopy(std::string program, std::string folder, std::vector<std::string> outputFolders)
    : program_(std::move(program)), folder_(std::move(folder)) {
  std::string pattern = (fs::temp_directory_path() / "veldnls_generator.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error(pattern + " can't be made");
  root_ = pattern;
  fs::create_directories(root_ / "data");
  fs::copy(fs::path(VELDNLS_SOURCE_DIR "/data") / folder_, root_ / "data" / folder_);
  for (const auto& file : fs::directory_iterator(root_ / "data" / folder_)) {
    fs::permissions(file.path(), fs::perms::owner_write, fs::perm_options::add);
  }
  for (const std::string& output : outputFolders) fs::create_directories(root_ / "out" / output);
}

GeneratorCopy::~GeneratorCopy() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void GeneratorCopy::replace(const std::string& name, const std::string& from, const std::string& to) const {
  std::string text = readFile(data(name));
  const size_t at = text.find(from);
  if (at == std::string::npos) {
    ADD_FAILURE() << name << " has no \"" << from << "\"";
    return;
  }
  std::ofstream(data(name), std::ios::binary) << text.replace(at, from.size(), to);
}

void GeneratorCopy::append(const std::string& name, const std::string& text) const {
  std::ofstream(data(name), std::ios::binary | std::ios::app) << text;
}

Ending GeneratorCopy::run() const {
  return runProgram({program_, "--data", (root_ / "data").string(), "--out", (root_ / "out").string()});
}

}  // namespace test
