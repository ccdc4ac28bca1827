# The kernels by themselves, each on each tier.
add_executable(kernels_bench kernels_bench.cpp)
target_compile_definitions(kernels_bench PRIVATE BENCH_TEXTS="${CMAKE_CURRENT_SOURCE_DIR}/texts")
target_link_libraries(kernels_bench PRIVATE veldnls_inside veldnls_strict benchmark::benchmark)
