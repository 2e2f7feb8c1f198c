# Not a Google Benchmark program: a host that bench/inspector.sh loads over HTTP with wrk.
find_package(CivetWeb REQUIRED)
add_executable(bench_inspector_host InspectorBenchHost.cpp)
target_link_libraries(bench_inspector_host PRIVATE tov_inspection CivetWeb::CivetWeb)
tov_add_benchmark(bench_debugger LAYER inspection DebuggerBench.cpp)
