tov_add_test_suite(tov_types_tests LAYER types
  utils/TypeTestSupport.cpp
  utils/TypeManagerTest.cpp
  utils/details/TypeMetadataTest.cpp
  utils/StaticObjectTest.cpp
  utils/PropertyTest.cpp)
