# Install rules: the public headers, the shared library with its SONAME
# links, a CMake package (ryxcore::ryxcore) and a pkg-config file. Nothing
# from src/, tests or benchmarks is installed. Every installed path is
# relative to the prefix, so `cmake --install build --prefix DIR` works for
# any DIR chosen after configuring.
include(CMakePackageConfigHelpers)

set(RYX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ryxcore)

install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")

install(TARGETS ryxcore EXPORT ryxcoreTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT ryxcoreTargets NAMESPACE ryxcore:: DESTINATION ${RYX_CMAKE_DIR})

configure_package_config_file(${CMAKE_CURRENT_SOURCE_DIR}/cmake/ryxcoreConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/ryxcoreConfig.cmake
  INSTALL_DESTINATION ${RYX_CMAKE_DIR})
# A consumer asking for 4.x gets any 4.y with y >= x; a new major version
# means a changed interface and is refused at the consumer's configure time.
# The file also records the pointer size, so that a 64-bit consumer does not
# take a 32-bit install; an i386 build (-m32 on targets only) is 32-bit
# whatever the compiler's default.
function(ryx_write_version_file)
  if(RYX_M32)
    set(CMAKE_SIZEOF_VOID_P 4)
  endif()
  write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ryxcoreConfigVersion.cmake
    VERSION ${ryxcore_VERSION} COMPATIBILITY SameMajorVersion)
endfunction()
ryx_write_version_file()
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ryxcoreConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/ryxcoreConfigVersion.cmake
        DESTINATION ${RYX_CMAKE_DIR})

# pkg-config: the prefix is found from the .pc file's own folder, so the
# file stays right whatever prefix the install is given.
set(RYX_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH RYX_PC_TO_PREFIX /p/${RYX_PC_DIR} /p)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/cmake/ryxcore.pc.in
               ${CMAKE_CURRENT_BINARY_DIR}/ryxcore.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ryxcore.pc DESTINATION ${RYX_PC_DIR})
