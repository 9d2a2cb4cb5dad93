# Warnings of our own sources; never installed and never passed on to users.
add_library(tooldb_warnings INTERFACE)
target_compile_options(tooldb_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wcast-align -Wformat=2 -Wnull-dereference -Werror)
