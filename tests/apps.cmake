# The programs through their real command lines (tests/apps/programs.test.mjs, run by node): tov-inspect
# against a running tov-demo, and the demo's own refusals. The programs are declared under apps/, which
# the build adds after the tests: the generator expressions resolve at generation.
if(TOV_BUILD_APPS AND EXISTS ${PROJECT_SOURCE_DIR}/apps/inspect/CMakeLists.txt)
  tov_add_node_test(tov_programs_command_line DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/apps SCRIPT programs.test.mjs
    TIMEOUT 120
    ENVIRONMENT TOV_INSPECT=$<TARGET_FILE:tov-inspect> TOV_DEMO=$<TARGET_FILE:tov-demo> TOV_VERSION=${PROJECT_VERSION})
endif()
