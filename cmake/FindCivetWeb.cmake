# Finds the CivetWeb library and gives the imported target CivetWeb::CivetWeb.
# Debian's package ships no pkg-config file, and its CMake package refers to the server program,
# which lives in another package, so the header and the library are looked up directly.
find_path(CivetWeb_INCLUDE_DIR NAMES civetweb.h)
find_library(CivetWeb_LIBRARY NAMES civetweb)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CivetWeb REQUIRED_VARS CivetWeb_LIBRARY CivetWeb_INCLUDE_DIR)

if(CivetWeb_FOUND AND NOT TARGET CivetWeb::CivetWeb)
  add_library(CivetWeb::CivetWeb UNKNOWN IMPORTED)
  set_target_properties(CivetWeb::CivetWeb PROPERTIES
    IMPORTED_LOCATION "${CivetWeb_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${CivetWeb_INCLUDE_DIR}")
endif()
mark_as_advanced(CivetWeb_INCLUDE_DIR CivetWeb_LIBRARY)
