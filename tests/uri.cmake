tov_add_test_suite(tov_uri_tests LAYER uri
  utils/UriTest.cpp)
