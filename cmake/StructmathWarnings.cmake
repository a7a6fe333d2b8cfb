# Compiler warnings shared by every target of the project.
add_library(structmath_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(structmath_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual)
  if(STRUCTMATH_WARNINGS_AS_ERRORS)
    target_compile_options(structmath_warnings INTERFACE -Werror)
  endif()
endif()
