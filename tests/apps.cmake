# The inspector's command-line client, driven in-process against a server on a loopback port. Its core
# library is declared under apps/, which the build adds after the tests: the link resolves at generation.
if(TOV_BUILD_APPS AND EXISTS ${PROJECT_SOURCE_DIR}/apps/inspect/CMakeLists.txt)
  tov_add_test_suite(tov_inspect_tests
    support/RawHttpClient.cpp
    apps/inspect/CommandsTest.cpp
    apps/inspect/HttpClientTest.cpp
    apps/inspect/TextOutputTest.cpp)
  target_link_libraries(tov_inspect_tests PRIVATE tov_inspect_core)
endif()
