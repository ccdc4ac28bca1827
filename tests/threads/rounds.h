// Many threads that make their first pipeline at once, round after round.
#pragma once

namespace threads_test {

// In each round the single-byte module isn't loaded when 64 threads make a pipeline through it, run it, and compare
// with what one thread alone got.
void makeFirstPipelinesAtOnce(int rounds);

// The same with the multi-byte module and, for some of the threads or for all, the GB18030 module.
void makeFirstMultiBytePipelinesAtOnce(int rounds);

// The same with pipelines that take user characters from the list of the object.
void makeFirstPipelinesWithUserTablesAtOnce(int rounds);

// Threads that share all pipelines, and the pool of the object with scratch memory from it, and validate the texts.
// Every result is compared with that of one thread alone.
void hammerSharedPipelines(int rounds);

// Threads that take and give back blocks of one pool, and look whether the contents last.
void hammerOnePool(int rounds);

}  // namespace threads_test
