# Test suite: GoogleTest is built from the Debian source package so that the
# same sources serve the x86-64, i386 and sanitizer builds.
set(GTEST_SRC /usr/src/googletest CACHE PATH "GoogleTest source tree")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
add_subdirectory(${GTEST_SRC} ${CMAKE_CURRENT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
target_link_libraries(gtest PRIVATE ryxcore_build_options)
target_link_libraries(gtest_main PRIVATE ryxcore_build_options)

# One test program per subsystem folder of tests/. Tests link the static
# archive so that internal routines can be checked directly.
file(GLOB RYX_TEST_DIRS LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/tests/*)
foreach(dir ${RYX_TEST_DIRS})
  if(NOT IS_DIRECTORY ${dir})
    continue()
  endif()
  get_filename_component(sub ${dir} NAME)
  if(sub STREQUAL "interface" OR sub STREQUAL "support")
    continue()
  endif()
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${dir}/*.cpp)
  if(NOT srcs)
    continue()
  endif()
  add_executable(test_${sub} ${srcs})
  target_include_directories(test_${sub} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/tests/support)
  set_target_properties(test_${sub} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  target_link_libraries(test_${sub} PRIVATE ryxcore_static GTest::gtest GTest::gtest_main)
  target_compile_options(test_${sub} PRIVATE -Wall -Wextra -Wno-unused-parameter)
  target_compile_definitions(test_${sub} PRIVATE RYX_SHARED_LIBRARY_PATH="$<TARGET_FILE:ryxcore>")
  add_dependencies(test_${sub} ryxcore)
  add_test(NAME ${sub} COMMAND test_${sub} --gtest_brief=1)
  set_tests_properties(${sub} PROPERTIES TIMEOUT 1200)
endforeach()

# The C interface: the header compiles as C99, a C program links the shared
# library, and the shared library exports exactly the declared names.
add_executable(test_c_header tests/interface/c_header_check.c)
target_compile_options(test_c_header PRIVATE -std=c99 -pedantic-errors -Wall -Wextra -Werror)
target_link_libraries(test_c_header PRIVATE ryxcore ryxcore_build_options)
add_test(NAME c_header COMMAND test_c_header)

add_test(NAME exported_names
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/tests/interface/check_exports.sh
          $<TARGET_FILE:ryxcore> ${CMAKE_CURRENT_SOURCE_DIR}/include ${CMAKE_CURRENT_SOURCE_DIR}/tests)

# Installs this build into a temporary prefix and builds a one-file consumer
# with find_package, pkg-config and add_subdirectory, with this build's
# target and sanitizer flags.
set(RYX_CONSUMER_FLAGS "")
set(RYX_SUBPROJECT_ARGS "")
if(RYX_M32)
  string(APPEND RYX_CONSUMER_FLAGS " -m32 -msse2 -mfpmath=sse")
  string(APPEND RYX_SUBPROJECT_ARGS " -DRYX_M32=ON")
endif()
if(RYX_SANITIZE)
  string(APPEND RYX_CONSUMER_FLAGS " -fsanitize=address,undefined")
  string(APPEND RYX_SUBPROJECT_ARGS " -DRYX_SANITIZE=ON")
endif()
add_test(NAME install_and_consume
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/tests/interface/install_consume.sh
          ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR} ${ryxcore_VERSION}
          ${CMAKE_C_COMPILER} "${RYX_CONSUMER_FLAGS}" "${RYX_SUBPROJECT_ARGS}")
set_tests_properties(install_and_consume PROPERTIES TIMEOUT 1200 SKIP_RETURN_CODE 77)
