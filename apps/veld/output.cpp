#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "doomed_file.h"
#include "failure.h"
#include "input.h"

namespace veld {

namespace {

constexpr mode_t permissionBits = 07777;
constexpr mode_t newFileMode = 0666;

// The mode of the file that is replaced, or what a new file gets here.
mode_t modeFor(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) == 0) return facts.st_mode & permissionBits;
  const mode_t mask = umask(0);
  umask(mask);
  return newFileMode & ~mask;
}

}  // namespace

Output::Output(const std::string& path) : path_("standard output"), file_(STDOUT_FILENO) {
  if (path.empty() || path == "-") return;
  const OutputPlace place = placeOf(path);
  path_ = place.path;
  if (place.kind == OutputPlace::Kind::plainFile) {
    openBeside();
  } else {
    openDirectly(place);
  }
}

void Output::openDirectly(const OutputPlace& place) {
  if (place.kind == OutputPlace::Kind::ownDescriptor) {
    file_ = fcntl(place.descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  } else {
    const bool joins = place.kind == OutputPlace::Kind::otherDescriptor;
    file_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC | (joins ? O_APPEND : 0));
  }
  if (file_ < 0) throw outputFailure(path_, "can't be opened for writing", errno);
}

// The file's name is short, since that of the output may be as long as one can be.
void Output::openBeside() {
  const EndingSignalsHeld held;
  temporary_ = (std::filesystem::path(path_).parent_path() / ".veld-XXXXXX").string();
  file_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (file_ < 0) {
    temporary_.clear();
    throw outputFailure(path_, "no file can be made beside it", errno);
  }
  removeAtSignals(temporary_.c_str());
  fchmod(file_, modeFor(path_));
}

Output::~Output() {
  if (file_ > STDOUT_FILENO) close(file_);
  if (temporary_.empty()) return;
  unlink(temporary_.c_str());
  removeAtSignals(nullptr);
}

void Output::refuseInputs(const std::vector<std::string>& files) const {
  struct stat output;
  if (!temporary_.empty() || fstat(file_, &output) != 0 || !S_ISREG(output.st_mode)) return;
  for (const std::string& file : files) {
    struct stat input;
    const int result = file == "-" ? fstat(STDIN_FILENO, &input) : stat(file.c_str(), &input);
    if (result == 0 && input.st_dev == output.st_dev && input.st_ino == output.st_ino) {
      throw Failure(inputName(file) + " is the output too; write to another file, or name it with -o");
    }
  }
}

void Output::write(Bytes bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<size_t>(count));
    } else if (errno != EINTR) {
      throw outputFailure(path_, "can't be written", errno);
    }
  }
}

void Output::commit() {
  const int file = file_;
  file_ = -1;
  if (close(file) != 0) throw outputFailure(path_, "can't be written", errno);
  if (temporary_.empty()) return;
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0) throw outputFailure(path_, "can't be replaced", errno);
  removeAtSignals(nullptr);
  temporary_.clear();
}

}  // namespace veld
