# Builds the program beside this file against the installed library, and with the library as a
# part of its own build, and runs both.
set(consumer_options
  -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
  -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
  -DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}
  -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE})
set(consumer_dir ${CMAKE_CURRENT_BINARY_DIR}/consumer)

function(add_consumer_test name)
  add_test(NAME Consumer.${name} COMMAND ${CMAKE_CTEST_COMMAND}
    --build-and-test ${CMAKE_CURRENT_FUNCTION_LIST_DIR} ${consumer_dir}/${name}
    --build-generator ${CMAKE_GENERATOR} --build-noclean
    --build-options ${consumer_options} ${ARGN}
    --test-command ${consumer_dir}/${name}/consumer)
  set_tests_properties(Consumer.${name} PROPERTIES TIMEOUT 1200)
endfunction()

if(TOOLDB_INSTALL)
  add_test(NAME Consumer.Install COMMAND ${CMAKE_COMMAND}
    --install ${PROJECT_BINARY_DIR} --prefix ${consumer_dir}/prefix)
  add_consumer_test(FindsPackage
    -DCMAKE_PREFIX_PATH=${consumer_dir}/prefix -DTOOLDB_VERSION=${PROJECT_VERSION})
  set_tests_properties(Consumer.Install PROPERTIES FIXTURES_SETUP installed_prefix)
  set_tests_properties(Consumer.FindsPackage PROPERTIES FIXTURES_REQUIRED installed_prefix)
endif()

# This compiles the whole library once more: only where it can find something new, and quickly.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_consumer_test(AddsSubdirectory
    -DTOOLDB_SOURCE_DIR=${PROJECT_SOURCE_DIR} -DCMAKE_BUILD_TYPE=)
endif()
