tov_add_benchmark(bench_events LAYER inspection EventBench.cpp)
