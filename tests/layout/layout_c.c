/* The public headers and the layout of their records, from C. */
#define STATIC_CHECK(condition, text) _Static_assert(condition, text)
#define IS_TYPE(type, field, expected) _Generic(&((type*)0)->field, __typeof__(expected)* : 1, default : 0)
#include "layout.h"
