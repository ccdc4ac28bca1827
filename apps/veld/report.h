// How the program tells of files, and of how far it has come.
#pragma once

#include "progress.h"

namespace veld {

enum class ReportFormat {
  text,  // sentences
  json,  // an object on a line of its own
};

}  // namespace veld
