# The programs through their real command lines (tests/apps/programs.test.mjs, run by node): tov-inspect
# against a running tov-demo, and the demo's own refusals. The programs are declared under apps/, which
# the build adds after the tests: the generator expressions resolve at generation. Without node the test
# is still listed, and reports itself skipped.
if(TOV_BUILD_APPS AND EXISTS ${PROJECT_SOURCE_DIR}/apps/inspect/CMakeLists.txt)
  find_program(TOV_NODE node)
  if(NOT TOV_NODE)
    add_test(NAME tov_programs_command_line COMMAND sh -c "echo 'skipped: node is not installed'; exit 77")
    set_tests_properties(tov_programs_command_line PROPERTIES SKIP_RETURN_CODE 77)
  else()
    add_test(NAME tov_programs_command_line
             COMMAND ${TOV_NODE} --test --test-reporter=spec programs.test.mjs
             WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/apps)
    set_tests_properties(tov_programs_command_line PROPERTIES TIMEOUT 120
      ENVIRONMENT "TOV_INSPECT=$<TARGET_FILE:tov-inspect>;TOV_DEMO=$<TARGET_FILE:tov-demo>;TOV_VERSION=${PROJECT_VERSION}")
  endif()
endif()
