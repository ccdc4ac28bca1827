// Shared handles on many threads, in few rounds.
#include <gtest/gtest.h>

#include "threads/locale_rounds.h"
#include "threads/rounds.h"

namespace threads_test {

namespace {

TEST(Threads, FirstPipelines) { makeFirstPipelinesAtOnce(100); }
TEST(Threads, FirstMultiBytePipelines) { makeFirstMultiBytePipelinesAtOnce(100); }
TEST(Threads, FirstPipelinesWithUserTables) { makeFirstPipelinesWithUserTablesAtOnce(30); }
TEST(Threads, SharedPipelines) { hammerSharedPipelines(20); }
TEST(Threads, SharedLocales) { hammerSharedLocales(10); }
TEST(Threads, OnePool) { hammerOnePool(5000); }

}  // namespace

}  // namespace threads_test
