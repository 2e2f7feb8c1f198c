tov_add_test_suite(tov_dynamic_tests
  utils/DynamicObjectTest.cpp
  utils/DynamicObjectBuilderTest.cpp)
