// Objects of machine-readable reports.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "text.h"

namespace veld {

using Json = nlohmann::ordered_json;

// On one line, which a terminal shows as it is. Bytes that are no UTF-8, as file names may have, become U+FFFD.
inline std::string toLine(const Json& object) {
  return withoutControls(object.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

}  // namespace veld
