tov_add_test_suite(tov_serialization_tests LAYER serialization
  utils/JsonSerializationTest.cpp
  utils/JsonTestSuiteTest.cpp
  utils/DynamicObjectSerializationTest.cpp
  utils/OutputChecksumTest.cpp)
# Public data sets stand beside the clone; tests that need them skip when they are absent.
target_compile_definitions(tov_serialization_tests PRIVATE
  TOV_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/../shared/data")
