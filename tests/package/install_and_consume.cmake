# Script run by ctest: install into a scratch prefix, then build consumers of the core
# and io libraries through find_package and through pkg-config, and run them and the
# installed tool with an empty environment (no LD_LIBRARY_PATH, no PATH).
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

# Runs an installed program with nothing in its environment and expects `text` in its output.
function(run_clean program text)
  run(env -i "${program}" ${ARGN})
  if(NOT last_output MATCHES "${text}")
    message(FATAL_ERROR "${program} printed:\n${last_output}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}" --config "${CONFIG}")

# 1. find_package(structmath [COMPONENTS io])
set(build "${WORK_DIR}/find_package")
run("${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${build}" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}"
    -DCMAKE_BUILD_TYPE=Release -DWITH_IO=${HAVE_IO})
run("${CMAKE_COMMAND}" --build "${build}")
run_clean("${build}/consumer" "structmath consumer ok")
if(HAVE_IO)
  run_clean("${build}/io_consumer" "structmath io consumer ok")
endif()

# 2. pkg-config. The consumer's own RUNPATH reaches only its direct dependencies, so
# the io library must find the core library by its own RUNPATH.
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
separate_arguments(extra_cxx UNIX_COMMAND "${CXX_FLAGS} ${LINKER_FLAGS}")
function(pkg_config_consumer package source program text)
  run("${PKG_CONFIG}" --cflags --libs ${package})
  string(STRIP "${last_output}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run("${CXX_COMPILER}" -std=c++17 ${extra_cxx} "${CONSUMER_DIR}/${source}" ${flags}
      -Wl,--enable-new-dtags "-Wl,-rpath,${libdir}" -o "${WORK_DIR}/${program}")
  run_clean("${WORK_DIR}/${program}" "${text}")
endfunction()
pkg_config_consumer(structmath main.cpp pkgconfig_consumer "structmath consumer ok")
if(HAVE_IO)
  pkg_config_consumer(structmath-io io_main.cpp pkgconfig_io_consumer "structmath io consumer ok")
endif()

# 3. The installed tool, its libraries and its sample data found from where it stands.
if(HAVE_TOOL)
  run_clean("${prefix}/bin/structmath" "== structmath match" tour)
  run_clean("${prefix}/bin/structmath" "^structmath [0-9]+\\.[0-9]+\\.[0-9]+" --version)
endif()
message(STATUS "the consumers and the installed tool ran")
