#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "failure.h"

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

bool isPlainOrNew(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) != 0 || S_ISREG(facts.st_mode);
}

std::string followLinks(const std::string& path) {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(path, error);
  return error ? path : place.string();
}

}  // namespace

Output::Output(const std::string& path) : path_("standard output"), file_(STDOUT_FILENO) {
  if (path.empty() || path == "-") return;
  path_ = followLinks(path);
  if (isPlainOrNew(path_)) {
    openBeside();
  } else {
    file_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0) throw systemFailure(path_, "can't be opened for writing", errno);
  }
}

void Output::openBeside() {
  temporary_ = path_ + ".XXXXXX";
  file_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (file_ < 0) {
    temporary_.clear();
    throw systemFailure(path_, "no file can be made beside it", errno);
  }
  fchmod(file_, modeFor(path_));
}

Output::~Output() {
  if (file_ > STDOUT_FILENO) close(file_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void Output::write(Bytes bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<size_t>(count));
    } else if (errno != EINTR) {
      throw systemFailure(path_, "can't be written", errno);
    }
  }
}

void Output::commit() {
  const int file = file_;
  file_ = -1;
  if (close(file) != 0) throw systemFailure(path_, "can't be written", errno);
  if (temporary_.empty()) return;
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0) throw systemFailure(path_, "can't be replaced", errno);
  temporary_.clear();
}

}  // namespace veld
