# Readers for values from outside, which refuse instead of asserting.
tov_add_test_suite(tov_reader_tests LAYER dynamic utils/DynamicObjectReaderTest.cpp)
