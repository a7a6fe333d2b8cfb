# Script run by ctest: install, then build and run the consumer both ways.
set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " shown "${ARGV}")
    message(FATAL_ERROR "command failed (${rc}): ${shown}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}" --config "${CONFIG}")

# 1. find_package(structmath)
set(build "${WORK_DIR}/find_package")
run("${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${build}" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}"
    -DCMAKE_BUILD_TYPE=Release)
run("${CMAKE_COMMAND}" --build "${build}")
run("${build}/consumer")
if(NOT last_output MATCHES "structmath consumer ok")
  message(FATAL_ERROR "find_package consumer printed: ${last_output}")
endif()

# 2. pkg-config
if(NOT PKG_CONFIG)
  message(FATAL_ERROR "pkg-config is not installed")
endif()
set(libdir "")
foreach(candidate lib lib64 lib/x86_64-linux-gnu)
  if(EXISTS "${prefix}/${candidate}/pkgconfig/structmath.pc")
    set(libdir "${prefix}/${candidate}")
  endif()
endforeach()
if(NOT libdir)
  message(FATAL_ERROR "structmath.pc was not installed under ${prefix}")
endif()
set(ENV{PKG_CONFIG_PATH} "${libdir}/pkgconfig")
run("${PKG_CONFIG}" --cflags --libs structmath)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(extra_cxx UNIX_COMMAND "${CXX_FLAGS} ${LINKER_FLAGS}")
run("${CXX_COMPILER}" -std=c++17 ${extra_cxx} "${CONSUMER_DIR}/main.cpp" ${flags}
    "-Wl,-rpath,${libdir}" -o "${WORK_DIR}/pkgconfig_consumer")
run("${WORK_DIR}/pkgconfig_consumer")
if(NOT last_output MATCHES "structmath consumer ok")
  message(FATAL_ERROR "pkg-config consumer printed: ${last_output}")
endif()
message(STATUS "both consumers built and ran")
