// The services that this program lends to the library, and the session options that the library reads through them.
#pragma once

#include <string>

#include "veldnls/host.h"

namespace veld {

// Real locks, keyed lists and options; extensions, code page and locale of the host are left to the defaults.
// All members may be called from any thread.
const NlsHostServices& hostServices();

// Option QZNLS.XPA_SESSION_CEI: what encoding 0 stands for. Until it is set the option has no value, and the library
// takes the host's encoding. Options are set before other threads use the library.
void setSessionEncoding(CEI cei);

// Option QZNLS.DBCSLANG: the double-byte language, as "JAPANESE", in which the names of double-byte types are read.
void setSessionLanguage(std::u16string language);

}  // namespace veld
