# Example programs: one short C program per subsystem in examples/, each
# built as ryx_example_<name> against the shared library, as a user would.
find_package(Threads REQUIRED)
file(GLOB RYX_EXAMPLE_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/examples/*.c)
add_custom_target(ryx_examples)
foreach(src ${RYX_EXAMPLE_SOURCES})
  get_filename_component(name ${src} NAME_WE)
  add_executable(ryx_example_${name} ${src})
  set_target_properties(ryx_example_${name} PROPERTIES C_STANDARD 99 C_STANDARD_REQUIRED ON)
  target_compile_options(ryx_example_${name} PRIVATE -Wall -Wextra)
  target_link_libraries(ryx_example_${name} PRIVATE ryxcore::ryxcore ryxcore_build_options Threads::Threads m)
  add_dependencies(ryx_examples ryx_example_${name})
endforeach()
