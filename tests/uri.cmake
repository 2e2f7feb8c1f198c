tov_add_test_suite(tov_uri_tests
  utils/UriTest.cpp)
