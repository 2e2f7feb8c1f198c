tov_add_test_suite(tov_dynamic_tests LAYER dynamic
  utils/DynamicObjectTest.cpp
  utils/DynamicObjectPropertiesTest.cpp
  utils/DynamicObjectIteratorTest.cpp
  utils/DynamicValueTest.cpp
  utils/DynamicObjectDifferentialTest.cpp
  utils/DynamicObjectBuilderTest.cpp
  utils/DynamicObjectPredicateTest.cpp
  utils/details/ChildWalkTest.cpp
  utils/details/NodeTableTest.cpp)
