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

constexpr mode_t permissionBits = 0777;
constexpr mode_t newFileMode = 0666;
constexpr uid_t sameOwner = static_cast<uid_t>(-1);

// What a new file gets here.
mode_t usualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return newFileMode & ~mask;
}

// Gives a new file the owner, the group and the permissions of the one that it replaces. Not every user may give files
// away: another group may then do only what all may. Set-id bits stay behind: they were for what the old file held.
void takeFacts(int file, const struct stat& replaced) {
  const bool keepsGroup =
      fchown(file, replaced.st_uid, replaced.st_gid) == 0 || fchown(file, sameOwner, replaced.st_gid) == 0;
  const mode_t mode = replaced.st_mode & permissionBits;
  const mode_t ofAll = mode & S_IRWXO;
  fchmod(file, keepsGroup ? mode : mode & (~mode_t{S_IRWXG} | ofAll << 3));
}

// What is written to a terminal or to the other end of a socket doesn't come back.
bool givesBack(mode_t mode) { return S_ISREG(mode) || S_ISFIFO(mode) || S_ISBLK(mode); }

bool factsOfInput(const std::string& file, struct stat& facts) {
  return (file == "-" ? fstat(STDIN_FILENO, &facts) : stat(file.c_str(), &facts)) == 0;
}

void refuseInputs(const struct stat& output, const std::vector<std::string>& inputs) {
  if (!givesBack(output.st_mode)) return;
  for (const std::string& file : inputs) {
    struct stat input;
    if (factsOfInput(file, input) && input.st_dev == output.st_dev && input.st_ino == output.st_ino) {
      throw Failure(inputName(file) + " is the output too; write to another file, or name it with -o");
    }
  }
}

// To be asked ahead of opening a pipe, which waits for its reader.
void requireInputs(const std::vector<std::string>& inputs) {
  for (const std::string& file : inputs) {
    struct stat input;
    if (!factsOfInput(file, input)) throw inputFailure(file, errno);
  }
}

}  // namespace

Output::Output(const std::string& path, const std::vector<std::string>& inputs)
    : path_("standard output"), file_(STDOUT_FILENO) {
  struct stat facts;
  if (path.empty() || path == "-") {
    if (fstat(file_, &facts) == 0) refuseInputs(facts, inputs);
    return;
  }
  const OutputPlace place = placeOf(path);
  path_ = place.path;
  if (place.kind == OutputPlace::Kind::plainFile) {
    openBeside();
    return;
  }
  if (stat(path_.c_str(), &facts) == 0) {
    refuseInputs(facts, inputs);
    if (S_ISFIFO(facts.st_mode) && place.kind != OutputPlace::Kind::ownDescriptor) requireInputs(inputs);
  }
  openDirectly(place);
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
  struct stat replaced;
  if (stat(path_.c_str(), &replaced) == 0) {
    takeFacts(file_, replaced);
  } else {
    fchmod(file_, usualMode());
  }
}

Output::~Output() {
  if (file_ > STDOUT_FILENO) close(file_);
  if (temporary_.empty()) return;
  unlink(temporary_.c_str());
  removeAtSignals(nullptr);
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
