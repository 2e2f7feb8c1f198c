# tov-dap's frame reader, compiled in from apps/dap: it cuts what an editor sends into messages.
find_package(nlohmann_json 3 REQUIRED)
tov_add_fuzzer(fuzz_dap_frames LAYER foundation DapFrameReaderFuzzer.cpp ${PROJECT_SOURCE_DIR}/apps/dap/FrameReader.cpp)
target_include_directories(fuzz_dap_frames PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(fuzz_dap_frames PRIVATE nlohmann_json::nlohmann_json)
