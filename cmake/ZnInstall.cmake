# What `cmake --install` puts in place: both libraries, the public headers in a folder of their own, the package
# for find_package(ZnClassLib) and the file for pkg-config.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZnClassLib)

install(TARGETS ZnClassLib_static ZnClassLib_shared EXPORT ZnClassLibTargets)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZnClassLib FILES_MATCHING PATTERN "*.h")
install(EXPORT ZnClassLibTargets NAMESPACE ZnClassLib:: DESTINATION ${package_dir})

configure_package_config_file(cmake/ZnClassLibConfig.cmake.in ${PROJECT_BINARY_DIR}/ZnClassLibConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZnClassLibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZnClassLibConfig.cmake ${PROJECT_BINARY_DIR}/ZnClassLibConfigVersion.cmake
    DESTINATION ${package_dir})

# The .pc file finds the prefix from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH zn_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/ZnClassLib.pc.in ${PROJECT_BINARY_DIR}/ZnClassLib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZnClassLib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
