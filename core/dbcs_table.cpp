#include "core/dbcs.h"

namespace veldnls {

constexpr DbcsTypeRow dbcsTypes[dbcsTypeCount] = {
#include "encodings/dbcs_types.inc"
};

constexpr DbcsLanguageRow dbcsLanguages[dbcsLanguageCount] = {
#include "encodings/dbcs_languages.inc"
};

}  // namespace veldnls
