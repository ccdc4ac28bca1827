// Where the name of an output leads.
#pragma once

#include <string>

#include "failure.h"

namespace veld {

struct OutputPlace {
  enum class Kind {
    plainFile,        // one that is there, or is yet to be made
    other,            // a pipe, a device, a folder
    ownDescriptor,    // of this process, as /dev/stdout and /dev/fd/3
    otherDescriptor,  // of another process, below /proc
  };
  Kind kind;
  std::string path;     // of a plain file with all links followed, else as given
  int descriptor = -1;  // this process's
};

// Follows links; the last of them may lead to a file that is yet to be made. What a descriptor stands for isn't looked
// up: it may have no name any more, or be written by others too. Throws Failure where a name can't be one of a file.
OutputPlace placeOf(const std::string& path);

// A failure over an output, with the cure that its error asks for.
Failure outputFailure(const std::string& path, const char* action, int error);

}  // namespace veld
