tov_add_test_suite(tov_random_tests LAYER random
  utils/impl/RandomEngineTest.cpp
  utils/RandomTest.cpp
  utils/RandomManagerTest.cpp
  utils/RandomManagerSerializationTest.cpp)
