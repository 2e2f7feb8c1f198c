tov_add_benchmark(bench_random RandomBench.cpp)
