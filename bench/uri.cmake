tov_add_benchmark(bench_uri LAYER uri UriBench.cpp)
