tov_add_test_suite(tov_inspection_tests LAYER inspection
  support/RawHttpClient.cpp
  utils/debugger/InspectionFrameworkTest.cpp
  utils/debugger/impl/HTTPServerTest.cpp
  utils/debugger/impl/HTTPServerHostileInputTest.cpp
  utils/debugger/impl/HTTPServerConfiguredTest.cpp
  utils/debugger/impl/JsonHttpReplyTest.cpp
  utils/debugger/impl/ViewerFilesTest.cpp)
# The viewer's test compares what the library holds with the folder it was compiled from.
target_compile_definitions(tov_inspection_tests PRIVATE
  TOV_VIEWER_DIR="${PROJECT_SOURCE_DIR}/tov/utils/debugger/viewer")
tov_add_test_suite(tov_debugger_tests LAYER inspection
  support/RawHttpClient.cpp
  utils/debugger/DebuggerFrameworkTest.cpp)
