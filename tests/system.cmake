# The assembly points, System and Facilities, which put every subsystem together: the life cycle of the
# library and the services it owns for the run.
tov_add_test_suite(tov_system_tests LAYER inspection
  utils/SystemTest.cpp
  utils/TypeTestSupport.cpp
  utils/TypeSystemTest.cpp)

# A host that loads the library at run time (links none of it).
add_executable(tov_load_at_run_time utils/LoadAtRunTime.cpp)
target_link_libraries(tov_load_at_run_time PRIVATE ${CMAKE_DL_LIBS} Threads::Threads)
add_test(NAME load_at_run_time COMMAND tov_load_at_run_time $<TARGET_FILE:tov_utils>)
