# The assembly points, System and Facilities, which put every subsystem together: the life cycle of the
# library and the services it owns for the run.
tov_add_test_suite(tov_system_tests LAYER inspection
  utils/SystemTest.cpp
  utils/TypeTestSupport.cpp
  utils/TypeSystemTest.cpp)
