tov_add_test_suite(tov_event_tests LAYER inspection
  utils/debugger/EventRequestTest.cpp
  utils/debugger/RequestRegistryTest.cpp
  utils/debugger/impl/EventFilterFactoryTest.cpp)
