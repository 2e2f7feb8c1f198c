tov_add_benchmark(bench_uri UriBench.cpp)
