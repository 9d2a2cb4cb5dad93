# The binary interface: the order of the virtual operations, and the exported symbols.
find_program(CLANGXX clang++ REQUIRED)
find_program(MINGW_CXX x86_64-w64-mingw32-g++-posix REQUIRED)

foreach(abi Itanium Microsoft)
  string(TOLOWER ${abi} argument)
  add_test(NAME BinaryInterface.${abi}SlotsAreAsListed
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/check_vtables.py ${argument}
            ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include)
endforeach()
