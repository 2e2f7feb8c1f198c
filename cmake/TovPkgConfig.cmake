# Writes tov_utils.pc from its template for a library folder and an include folder given as the install
# rules take them. Relative folders are found from the .pc file's own place (${pcfiledir}), so the file
# stays right under any prefix given to `cmake --install --prefix`, multiarch folders
# (lib/x86_64-linux-gnu) included; absolute folders are written as they are.
#   tov_write_pkg_config(cmake/tov_utils.pc.in out/tov_utils.pc lib/x86_64-linux-gnu include 0.4.0)
function(tov_write_pkg_config template output libdir includedir version)
  if(IS_ABSOLUTE "${libdir}")
    set(PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
    set(PC_LIBDIR "${libdir}")
  else()
    # From <prefix>/<libdir>/pkgconfig back up to <prefix>, one ".." a folder.
    file(RELATIVE_PATH up "/${libdir}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(PC_PREFIX "\${pcfiledir}/${up}")
    set(PC_LIBDIR "\${prefix}/${libdir}")
  endif()
  if(IS_ABSOLUTE "${includedir}")
    set(PC_INCLUDEDIR "${includedir}")
  else()
    set(PC_INCLUDEDIR "\${prefix}/${includedir}")
  endif()
  set(PC_VERSION "${version}")
  configure_file(${template} ${output} @ONLY)
endfunction()
