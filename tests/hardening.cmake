tov_add_test_suite(tov_session_tests
  support/RawHttpClient.cpp
  hardening/SessionLeakTest.cpp)
