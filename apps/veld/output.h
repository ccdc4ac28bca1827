// Where converted text goes.
#pragma once

#include <string>
#include <vector>

#include "output_place.h"
#include "pipeline.h"

namespace veld {

// Standard output, or a file that takes its place only when all of it is written: the bytes go to a new file beside it,
// which is renamed at the end and removed if that is never reached. What isn't a plain file (a pipe, a device) is
// written directly. So is a descriptor, as /dev/stdout or /dev/fd/3, whatever it stands for: the text goes on where
// others have written, as on standard output.
class Output {
 public:
  // `path` empty or "-" is standard output. Throws Failure, also when text goes directly to a plain file, a pipe or a
  // block device that is one of the inputs, and would be read again, and ahead of waiting for a pipe's reader when an
  // input isn't there.
  Output(const std::string& path, const std::vector<std::string>& inputs);
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Throws Failure.
  void write(Bytes bytes);
  // Puts the file in its place. Throws Failure.
  void commit();

 private:
  void openDirectly(const OutputPlace& place);
  void openBeside();

  std::string path_;       // of a plain file with links followed
  std::string temporary_;  // the file beside it; empty when there is none
  int file_;
};

}  // namespace veld
