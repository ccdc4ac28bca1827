// Runs a target once on every file of the folders named, as an ordinary test does: a broken property ends the process.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<std::filesystem::path> filesIn(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  // Exactly as long as the file, so that a sanitizer sees a read behind it.
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** folders) {
  size_t replayed = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& path : filesIn(folders[i])) {
      std::printf("%s\n", path.c_str());
      std::fflush(stdout);
      replay(path);
      ++replayed;
    }
  }
  std::printf("%zu inputs\n", replayed);
  return replayed == 0 ? 1 : 0;
}
