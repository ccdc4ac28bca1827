// Shared handles on many threads, in thousands of rounds.
#include <gtest/gtest.h>

#include "threads/locale_rounds.h"
#include "threads/rounds.h"

namespace threads_test {

namespace {

TEST(ThreadsForLong, FirstPipelines) { makeFirstPipelinesAtOnce(5000); }
TEST(ThreadsForLong, FirstMultiBytePipelines) { makeFirstMultiBytePipelinesAtOnce(5000); }
TEST(ThreadsForLong, FirstPipelinesWithUserTables) { makeFirstPipelinesWithUserTablesAtOnce(1500); }
TEST(ThreadsForLong, SharedPipelines) { hammerSharedPipelines(200); }
TEST(ThreadsForLong, SharedLocales) { hammerSharedLocales(500); }
TEST(ThreadsForLong, OnePool) { hammerOnePool(50000); }

}  // namespace

}  // namespace threads_test
