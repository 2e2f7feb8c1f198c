# Readers for values from outside, which refuse instead of asserting.
tov_add_test_suite(tov_reader_tests utils/DynamicObjectReaderTest.cpp)
