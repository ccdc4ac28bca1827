// Runs the built command-line program and tells what it did.
#pragma once

#include <sys/resource.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace test {

struct Outcome {
  int exitCode = -1;  // -1: a signal ended it
  std::string output;
  std::string errors;
  long peakKilobytes = 0;
};

// Whether CTest put this program into another locale.
bool inProcessLocale();
// LC_ALL=C, or in such a program nothing.
std::vector<std::string> usualEnvironment();

struct Call {
  std::vector<std::string> arguments = {};
  std::string input = {};                                     // its standard input, through a pipe
  std::vector<std::string> environment = usualEnvironment();  // added to that of the test
  size_t pieceSize = 0;                                       // if set, input comes in pieces, with pauses
  std::function<void(int file)> writer = nullptr;             // if set, writes standard input instead
  const char* outputFile = nullptr;                           // if set, standard output goes there
  const char* errorFile = nullptr;                            // if set, standard error goes there
  int closedFile = -1;                                        // if set, a standard file that is closed
};

Outcome runVeld(const Call& call);

// `veld convert -f from -t to` of an input.
Outcome convert(const std::string& from, const std::string& to, std::string_view input,
                std::vector<std::string> more = {});
// The same with a pause behind each byte of the input.
Outcome convertInPieces(const std::string& from, const std::string& to, std::string_view input);

// A conversion that gave these bytes and had nothing to tell.
void expectWhole(const Outcome& outcome, std::string_view expectedHex);
// One that gave these bytes and told of one loss in standard input, with these words. The place is "offset 3, line 1,
// column 4", or begins so.
void expectLoss(const Outcome& outcome, std::string_view expectedHex, std::string_view place,
                std::string_view words = "");

// Bytes from hexadecimal digits, and back, as text.
std::string bytes(std::string_view hex);
std::string hex(std::string_view bytes);

// A text that repeats another.
std::string times(size_t count, std::string_view text);

bool contains(std::string_view text, std::string_view part);
size_t lineCount(std::string_view text);

// A folder for one test, removed with all in it.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string write(const std::string& name, std::string_view content) const;
  std::string read(const std::string& name) const;
  std::vector<std::string> names() const;

 private:
  std::filesystem::path path_;
};

}  // namespace test
