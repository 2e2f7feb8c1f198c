tov_add_test_suite(tov_foundation_tests LAYER foundation
  allocator/AllocatorTest.cpp
  utils/LoggerTest.cpp
  utils/UuidTest.cpp
  utils/ThreadTest.cpp
  utils/TimeTest.cpp
  utils/ContainersTest.cpp
  utils/details/RemainderTest.cpp
  utils/StringTableTest.cpp
  utils/FileInputOutputTest.cpp
  utils/MemoryInputOutputTest.cpp)
