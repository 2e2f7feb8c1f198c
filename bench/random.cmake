tov_add_benchmark(bench_random LAYER random RandomBench.cpp)
