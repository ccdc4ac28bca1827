#include "input.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace veld {

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

Failure inputFailure(const std::string& path, int error) {
  return systemFailure(inputName(path), "can't be opened for reading", error, "check its name and who may read it");
}

Input::Input(const std::string& path)
    : name_(inputName(path)),
      file_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      buffer_(blockSize) {
  if (file_ < 0) throw inputFailure(path, errno);
}

Input::~Input() {
  if (file_ != STDIN_FILENO) close(file_);
}

bool Input::fill() {
  std::copy(buffer_.begin() + static_cast<ptrdiff_t>(start_), buffer_.begin() + static_cast<ptrdiff_t>(end_),
            buffer_.begin());
  end_ -= start_;
  start_ = 0;
  ssize_t count;
  do {
    count = read(file_, buffer_.data() + end_, buffer_.size() - end_);
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw systemFailure(name_, "can't be read", errno, "name a file that can be read");
  end_ += static_cast<size_t>(count);
  return count > 0;
}

void Input::take(size_t count) {
  start_ += count;
  offset_ += count;
}

}  // namespace veld
