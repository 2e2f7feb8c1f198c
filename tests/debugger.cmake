tov_add_test_suite(tov_inspection_tests
  support/RawHttpClient.cpp
  utils/debugger/InspectionFrameworkTest.cpp
  utils/debugger/impl/HTTPServerTest.cpp
  utils/debugger/impl/HTTPServerHostileInputTest.cpp
  utils/debugger/impl/JsonHttpReplyTest.cpp)
