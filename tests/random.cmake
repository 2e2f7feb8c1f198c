tov_add_test_suite(tov_random_tests
  utils/impl/RandomEngineTest.cpp
  utils/RandomTest.cpp
  utils/RandomManagerTest.cpp
  utils/RandomManagerSerializationTest.cpp)
