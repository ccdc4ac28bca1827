#include "hs/second_copy.h"

namespace test {

PoolCalls secondCopy() { return ownCopy; }

}  // namespace test
