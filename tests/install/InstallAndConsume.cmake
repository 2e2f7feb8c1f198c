# Script run by CTest: install into a fresh prefix, build a consumer with find_package and with
# pkg-config at a newer standard than the library's, run both, and run the installed programs with no
# LD_LIBRARY_PATH, as a user of the prefix would.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
list(APPEND CMAKE_MODULE_PATH ${PROJECT_DIR}/cmake)
include(TovPkgConfig)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGN}\n${output}")
  endif()
  set(lastOutput "${output}" PARENT_SCOPE)
endfunction()

function(expect text pattern what)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "${what}: expected ${pattern} in:\n${text}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

foreach(required include/tov/utils/All.h include/tov/allocator/Allocator.h ${LIBDIR}/libtov_utils.so.0
        ${LIBDIR}/libtov_allocator.so.0 ${LIBDIR}/cmake/tov_utils/tov_utilsConfig.cmake
        ${LIBDIR}/pkgconfig/tov_utils.pc)
  if(NOT EXISTS ${prefix}/${required})
    message(FATAL_ERROR "missing after install: ${required}")
  endif()
endforeach()
file(GLOB_RECURSE privateHeaders ${prefix}/include/tov/utils/impl/* ${prefix}/include/tov/utils/debugger/impl/*)
if(privateHeaders)
  message(FATAL_ERROR "private headers were installed: ${privateHeaders}")
endif()

set(sanitizerFlags "")
if(SANITIZE)
  set(sanitizerFlags "-fsanitize=${SANITIZE}")
endif()

# The target asks for C++17 at least; a C++20 consumer keeps its own standard.
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/consumer -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_STANDARD=20 -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${sanitizerFlags}"
    "-DCMAKE_EXE_LINKER_FLAGS=${sanitizerFlags}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${WORK_DIR}/consumer/consumer)
expect("${lastOutput}" "consumer ran against ${VERSION}" "CMake consumer")

# The same program through pkg-config, as a non-CMake host builds it, in C++20.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
  run(${PKG_CONFIG} --modversion tov_utils)
  expect("${lastOutput}" "^${VERSION}" "pkg-config version")
  run(${PKG_CONFIG} --cflags --libs tov_utils)
  if(lastOutput MATCHES "-std=")
    message(FATAL_ERROR "tov_utils.pc forces a standard: ${lastOutput}")
  endif()
  string(STRIP "${lastOutput}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  separate_arguments(extraFlags UNIX_COMMAND "${sanitizerFlags}")
  run(${CXX} -std=c++20 ${extraFlags} ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/consumer_pc ${flags}
      -Wl,-rpath,${prefix}/${LIBDIR})
  run(${WORK_DIR}/consumer_pc)

  # Under /usr the libraries go to a multiarch folder, one level deeper: the paths must still resolve.
  set(multiarch ${WORK_DIR}/multiarch)
  set(deepLibdir lib/x86_64-linux-gnu)
  file(MAKE_DIRECTORY ${multiarch}/include ${multiarch}/${deepLibdir})
  tov_write_pkg_config(${PROJECT_DIR}/cmake/tov_utils.pc.in ${multiarch}/${deepLibdir}/pkgconfig/tov_utils.pc
                       ${deepLibdir} include ${VERSION})
  set(ENV{PKG_CONFIG_PATH} ${multiarch}/${deepLibdir}/pkgconfig)
  foreach(variable libdir includedir)
    run(${PKG_CONFIG} --variable=${variable} tov_utils)
    string(STRIP "${lastOutput}" found)
    get_filename_component(found "${found}" REALPATH)
    get_filename_component(expected "${multiarch}/${deepLibdir}" REALPATH)
    if(variable STREQUAL "includedir")
      get_filename_component(expected "${multiarch}/include" REALPATH)
    endif()
    if(NOT found STREQUAL expected)
      message(FATAL_ERROR "multiarch ${variable}: ${found}, expected ${expected}")
    endif()
  endforeach()
endif()

# The programs, where they were built: run from the prefix with nothing but their own run path.
if(EXISTS ${prefix}/bin/tov-inspect)
  unset(ENV{LD_LIBRARY_PATH})
  run(${prefix}/bin/tov-inspect --version)
  expect("${lastOutput}" "tov-inspect ${VERSION}" "tov-inspect --version")
  run(${prefix}/bin/tov-demo --help)
  expect("${lastOutput}" "--port" "tov-demo --help")
  foreach(required share/man/man1/tov-inspect.1 share/man/man1/tov-demo.1
          share/bash-completion/completions/tov-inspect)
    if(NOT EXISTS ${prefix}/${required})
      message(FATAL_ERROR "missing after install: ${required}")
    endif()
  endforeach()
endif()
message(STATUS "install and consume: ok")
