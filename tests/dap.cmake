# tov-dap driven by a Debug Adapter Protocol client against tov-demo (tests/dap/dap.test.mjs). It needs
# node, the npm packages that scripts/setup.sh installs into tests/dap/node_modules, and the two programs;
# without one of them the test is still listed, and reports itself skipped with the reason.
set(TOV_DAP_TEST_DIR ${CMAKE_CURRENT_SOURCE_DIR}/dap)
set(TOV_DAP_MISSING "")
if(NOT EXISTS ${TOV_DAP_TEST_DIR}/node_modules/@vscode/debugadapter-testsupport/package.json)
  set(TOV_DAP_MISSING "the npm packages of tests/dap are not installed (scripts/setup.sh)")
elseif(NOT TOV_BUILD_APPS OR NOT EXISTS ${PROJECT_SOURCE_DIR}/apps/demo/CMakeLists.txt
       OR NOT EXISTS ${PROJECT_SOURCE_DIR}/apps/dap/CMakeLists.txt)
  set(TOV_DAP_MISSING "tov-demo and tov-dap are not built here (TOV_BUILD_APPS is off)")
endif()
tov_add_node_test(tov_dap_client DIRECTORY ${TOV_DAP_TEST_DIR} SCRIPT dap.test.mjs MISSING "${TOV_DAP_MISSING}"
  TIMEOUT 90 ENVIRONMENT TOV_DEMO=$<TARGET_FILE:tov-demo> TOV_DAP=$<TARGET_FILE:tov-dap>)

# The adapter's framing, fed in every size of piece and with the malformed streams it must live through.
if(TOV_BUILD_APPS AND EXISTS ${PROJECT_SOURCE_DIR}/apps/dap/CMakeLists.txt)
  find_package(nlohmann_json 3 REQUIRED)
  tov_add_test_suite(tov_dap_tests apps/dap/FrameReaderTest.cpp ${PROJECT_SOURCE_DIR}/apps/dap/FrameReader.cpp)
  target_include_directories(tov_dap_tests PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(tov_dap_tests PRIVATE nlohmann_json::nlohmann_json)
endif()
