# The demo host's own pieces, compiled from apps/demo into the suite (the program itself is run by the
# tov_demo_tour test of apps/demo).
set(TOV_DEMO_DIR ${PROJECT_SOURCE_DIR}/apps/demo)
tov_add_test_suite(tov_demo_tests
  apps/demo/DemoTest.cpp
  ${TOV_DEMO_DIR}/Agent.cpp
  ${TOV_DEMO_DIR}/JsonText.cpp
  ${TOV_DEMO_DIR}/World.cpp)
target_include_directories(tov_demo_tests PRIVATE ${TOV_DEMO_DIR})
