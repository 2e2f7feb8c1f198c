# Script run by CTest: install, build a consumer with find_package and with pkg-config, run both.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGN}\n${output}")
  endif()
  set(lastOutput "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

foreach(required include/tov/utils/All.h include/tov/allocator/Allocator.h lib/libtov_utils.so.0
        lib/libtov_allocator.so.0 lib/cmake/tov_utils/tov_utilsConfig.cmake lib/pkgconfig/tov_utils.pc)
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

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/consumer -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${sanitizerFlags}" "-DCMAKE_EXE_LINKER_FLAGS=${sanitizerFlags}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${WORK_DIR}/consumer/consumer)
if(NOT lastOutput MATCHES "consumer ran against 0.4.0")
  message(FATAL_ERROR "unexpected consumer output: ${lastOutput}")
endif()

# The same program through pkg-config, as a non-CMake host builds it.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
  run(${PKG_CONFIG} --cflags --libs tov_utils)
  string(STRIP "${lastOutput}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  separate_arguments(extraFlags UNIX_COMMAND "${sanitizerFlags}")
  run(${CXX} ${extraFlags} ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/consumer_pc ${flags} -Wl,-rpath,${prefix}/lib)
  run(${WORK_DIR}/consumer_pc)
endif()
message(STATUS "install and consume: ok")
