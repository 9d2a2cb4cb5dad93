# The binary interface: the order of the virtual operations, and the exported symbols.
if(NOT CMAKE_CROSSCOMPILING)
  find_program(CLANGXX clang++ REQUIRED)
  find_program(MINGW_CXX x86_64-w64-mingw32-g++-posix REQUIRED)
  foreach(abi itanium microsoft msvc)
    add_test(NAME BinaryInterface.SlotsAreAsListed.${abi}
      COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/check_vtables.py ${abi}
              ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include)
  endforeach()
endif()

# Sanitizers add symbols of their own.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_test(NAME BinaryInterface.ExportsAreAsListed
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/check_exports.py $<TARGET_FILE:tooldb>)
endif()
