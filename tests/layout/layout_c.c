/* The public headers and the layout of their records, from C. */
#define STATIC_CHECK(condition, text) _Static_assert(condition, text)
#include "layout.h"
