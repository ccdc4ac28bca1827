#include "output_place.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <filesystem>

namespace veld {

namespace {

namespace fs = std::filesystem;

constexpr int mostLinks = 40;
constexpr const char* noOpening = "can't be opened for writing";

const char* cureFor(int error) {
  switch (error) {
    case ENAMETOOLONG:
      return "choose a shorter name";
    case ENOENT:
    case ENOTDIR:
      return "make its folder first, or choose another output";
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
      return "make room on its device, or choose another output";
    case EPIPE:
      return "its reader ended early";
    case EACCES:
    case EPERM:
    case EROFS:
      return "choose an output where you may write";
    default:
      return "choose another output";
  }
}

// Such a name is /proc/<process>/fd/<number>.
bool namesDescriptor(const fs::path& place) {
  std::error_code error;
  const fs::path folder = fs::weakly_canonical(fs::absolute(place, error).parent_path(), error);
  return !error && folder.filename() == "fd" && folder.string().starts_with("/proc/");
}

// To what is no link, or the name of a descriptor.
fs::path followLinks(const std::string& path) {
  std::error_code error;
  fs::path place = path;
  for (int links = 0; !namesDescriptor(place) && fs::is_symlink(place, error); ++links) {
    if (links == mostLinks) throw outputFailure(path, "can't be followed", ELOOP);
    place = place.parent_path() / fs::read_symlink(place, error);
  }
  return place;
}

OutputPlace descriptorAt(const fs::path& place, const std::string& path) {
  std::error_code error;
  if (!fs::equivalent(fs::absolute(place).parent_path(), "/proc/self/fd", error)) {
    return {OutputPlace::Kind::otherDescriptor, path};
  }
  const std::string name = place.filename().string();
  int number = -1;
  const char* const end = name.data() + name.size();
  if (std::from_chars(name.data(), end, number).ptr != end) throw outputFailure(path, noOpening, ENOENT);
  return {OutputPlace::Kind::ownDescriptor, path, number};
}

// Whether there is something, and that is no plain file.
bool isOther(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) == 0) return !S_ISREG(facts.st_mode);
  if (errno != ENOENT) throw outputFailure(path, noOpening, errno);
  return false;
}

}  // namespace

Failure outputFailure(const std::string& path, const char* action, int error) {
  return systemFailure(path, action, error, cureFor(error));
}

OutputPlace placeOf(const std::string& path) {
  const fs::path place = followLinks(path);
  if (namesDescriptor(place)) return descriptorAt(place, path);
  if (isOther(path)) return {OutputPlace::Kind::other, path};
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(place, error);
  return {OutputPlace::Kind::plainFile, error ? place.string() : canonical.string()};
}

}  // namespace veld
