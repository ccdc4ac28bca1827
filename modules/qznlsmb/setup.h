// The setup slots. Contracts stand at NlsMultiByteSetup in veldnls/modules.h. The slots of the Unicode forms are one:
// the form is that of the Unicode row.
#pragma once

#include <type_traits>

#include "veldnls/modules.h"

namespace veldnls {

using MultiByteSetup = std::remove_pointer_t<NlsMultiByteSetup>;

// Sets `stage` and, as `singleMap`, a byte map.
MultiByteSetup setupByteToMultibyte;
// The same, and `scan`. GB18030 has no scanner of its own here.
MultiByteSetup setupMultibyteToByte;

// Sets `pairs`, `singleMap`, `kanaPairs` and `stage`. A pipeline to GB18030 uses "qznlsgb" if that is loaded by now,
// and otherwise the pairs of the target's set, for as long as it lives.
MultiByteSetup setupUnicodeToMultibyte;
// The same, and `scan`.
MultiByteSetup setupUtfeToMultibyte;

// Sets `pairs`, `toUnicode`, `scan` and `stage`. For GB18030 loads "qznlsgb" when no one has yet.
MultiByteSetup setupMultibyteToUnicode;

}  // namespace veldnls
