tov_add_test_suite(tov_session_tests LAYER inspection
  support/RawHttpClient.cpp
  hardening/SessionLeakTest.cpp)

# The soak runs for minutes (TOV_SOAK_SECONDS, 120 by default), past the time limit of the other suites.
add_executable(tov_soak_tests support/RawHttpClient.cpp hardening/SoakTest.cpp)
target_link_libraries(tov_soak_tests PRIVATE tov_inspection GTest::gtest GTest::gtest_main)
target_include_directories(tov_soak_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
gtest_discover_tests(tov_soak_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 1800)
