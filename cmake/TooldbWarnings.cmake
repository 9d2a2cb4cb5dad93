# Warnings of our own sources; never installed and never passed on to users.
add_library(tooldb_warnings INTERFACE)
if(MSVC)
  target_compile_options(tooldb_warnings INTERFACE /W4 /WX /permissive- /utf-8)
  return()
endif()
target_compile_options(tooldb_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wcast-align -Wformat=2 -Wnull-dereference -Werror)
# At -O3 g++ 12 sees overruns and overlaps in inlined code of its own library that are not there.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tooldb_warnings INTERFACE
    -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
endif()
