tov_add_fuzzer(fuzz_uri_set LAYER uri UriSetFuzzer.cpp)
tov_add_fuzzer(fuzz_uri_first_segment LAYER uri UriFirstSegmentFuzzer.cpp)
tov_add_fuzzer(fuzz_uri_query LAYER uri UriQueryFuzzer.cpp)
