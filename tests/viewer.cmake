# The web viewer in headless Chromium against tov-demo (tests/viewer/viewer.test.mjs). It needs node, the
# npm packages that scripts/setup.sh installs into tests/viewer/node_modules, Debian's chromium and the
# demo; without one of them the test is still listed, and reports itself skipped with the reason.
set(TOV_VIEWER_TEST_DIR ${CMAKE_CURRENT_SOURCE_DIR}/viewer)
find_program(TOV_CHROMIUM NAMES chromium chromium-browser)
set(TOV_VIEWER_MISSING "")
if(NOT EXISTS ${TOV_VIEWER_TEST_DIR}/node_modules/playwright-core/package.json)
  set(TOV_VIEWER_MISSING "the npm packages of tests/viewer are not installed (scripts/setup.sh)")
elseif(NOT TOV_CHROMIUM)
  set(TOV_VIEWER_MISSING "chromium is not installed (scripts/setup.sh)")
elseif(NOT TOV_BUILD_APPS OR NOT EXISTS ${PROJECT_SOURCE_DIR}/apps/demo/CMakeLists.txt)
  set(TOV_VIEWER_MISSING "tov-demo is not built here (TOV_BUILD_APPS is off)")
endif()
# Screenshots of the run are left in the build folder, in viewer-artifacts/.
tov_add_node_test(tov_viewer_browser DIRECTORY ${TOV_VIEWER_TEST_DIR} SCRIPT viewer.test.mjs
  MISSING "${TOV_VIEWER_MISSING}" TIMEOUT 300
  ENVIRONMENT TOV_DEMO=$<TARGET_FILE:tov-demo> CHROMIUM=${TOV_CHROMIUM}
              TOV_VIEWER_ARTIFACTS=${CMAKE_BINARY_DIR}/viewer-artifacts)
