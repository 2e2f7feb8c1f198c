# The programs through their real command lines: tov-inspect against a running tov-demo, and the demo's
# refusals (tests/apps/CommandLineTest.sh). The programs are declared under apps/, which the build adds
# after the tests: the generator expressions resolve at generation.
if(TOV_BUILD_APPS AND EXISTS ${PROJECT_SOURCE_DIR}/apps/inspect/CMakeLists.txt)
  add_test(NAME tov_programs_command_line
    COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/apps/CommandLineTest.sh $<TARGET_FILE:tov-inspect>
            $<TARGET_FILE:tov-demo> ${PROJECT_VERSION}
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
  set_tests_properties(tov_programs_command_line PROPERTIES TIMEOUT 120)
endif()
