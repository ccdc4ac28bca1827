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
constexpr int mostLinks = 40;
constexpr const char* roomCure = "make room on its device, or choose another output";

// The mode of the file that is replaced, or what a new file gets here.
mode_t modeFor(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) == 0) return facts.st_mode & permissionBits;
  const mode_t mask = umask(0);
  umask(mask);
  return newFileMode & ~mask;
}

bool isPlainOrNew(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) != 0 || S_ISREG(facts.st_mode);
}

// The last of them may lead to a file that is yet to be made.
std::string followLinks(const std::string& path) {
  std::error_code error;
  std::filesystem::path place = path;
  for (int links = 0; std::filesystem::is_symlink(place, error); ++links) {
    if (links == mostLinks) throw systemFailure(path, "can't be followed", ELOOP, "choose another output");
    place = place.parent_path() / std::filesystem::read_symlink(place, error);
  }
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(place, error);
  return error ? place.string() : canonical.string();
}

}  // namespace

Output::Output(const std::string& path) : path_("standard output"), file_(STDOUT_FILENO) {
  if (path.empty() || path == "-") return;
  path_ = followLinks(path);
  if (isPlainOrNew(path_)) {
    openBeside();
  } else {
    file_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0) throw systemFailure(path_, "can't be opened for writing", errno, "choose another output");
  }
}

void Output::openBeside() {
  const EndingSignalsHeld held;
  temporary_ = path_ + ".XXXXXX";
  file_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (file_ < 0) {
    temporary_.clear();
    throw systemFailure(path_, "no file can be made beside it", errno,
                        "choose an output in a folder that you may write");
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
      throw systemFailure(path_, "can't be written", errno, errno == EPIPE ? "its reader ended early" : roomCure);
    }
  }
}

void Output::commit() {
  const int file = file_;
  file_ = -1;
  if (close(file) != 0) throw systemFailure(path_, "can't be written", errno, roomCure);
  if (temporary_.empty()) return;
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0)
    throw systemFailure(path_, "can't be replaced", errno, "choose another output");
  removeAtSignals(nullptr);
  temporary_.clear();
}

}  // namespace veld
