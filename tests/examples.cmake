# The smallest host of the README is compiled and run, so that the text a reader copies keeps working.
add_executable(smallest_host ${PROJECT_SOURCE_DIR}/examples/smallest_host.cpp)
target_link_libraries(smallest_host PRIVATE tov::utils)
# Port 0: the system picks one, so the run never meets a port in use.
add_test(NAME smallest_host COMMAND smallest_host 0)
set_tests_properties(smallest_host PROPERTIES TIMEOUT 30
  PASS_REGULAR_EXPRESSION "entity 0 is back at its bottom frame: 1")
