tov_add_benchmark(bench_events EventBench.cpp)
