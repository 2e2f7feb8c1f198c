tov_add_fuzzer(fuzz_http_request HttpRequestFuzzer.cpp)
# The header checks are private classes: their sources are compiled into the target itself.
tov_add_fuzzer(fuzz_request_guard RequestGuardFuzzer.cpp
  ${PROJECT_SOURCE_DIR}/tov/utils/debugger/impl/RequestGuard.cpp
  ${PROJECT_SOURCE_DIR}/tov/utils/debugger/impl/ListeningAddress.cpp)
