tov_add_test_suite(tov_session_tests LAYER inspection
  support/RawHttpClient.cpp
  hardening/SessionLeakTest.cpp)

# The soak runs for minutes (TOV_SOAK_SECONDS, 120 by default), past the time limit of the other suites: a
# plain ctest leaves it out, scripts/test.sh runs it with `ctest -C soak -L soak`.
add_executable(tov_soak_tests support/RawHttpClient.cpp hardening/SoakTest.cpp)
target_link_libraries(tov_soak_tests PRIVATE tov_inspection GTest::gtest GTest::gtest_main)
target_include_directories(tov_soak_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
add_test(NAME tov_soak COMMAND tov_soak_tests CONFIGURATIONS soak)
set_tests_properties(tov_soak PROPERTIES LABELS soak TIMEOUT 1800)
