// Objects of machine-readable reports.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace veld {

using Json = nlohmann::ordered_json;

// On one line. Bytes that are no UTF-8, as file names may have, become U+FFFD.
inline std::string toLine(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace veld
