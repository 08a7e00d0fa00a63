# Headers, library, client and the CMake package with the target ondrel::ondrel.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ondrel)

install(TARGETS ondrel EXPORT ondrel_targets)
install(DIRECTORY include/ondrel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(ONDREL_BUILD_CLIENT)
    install(TARGETS ondrel_client)
endif()

install(
    EXPORT ondrel_targets
    FILE ondrel-config.cmake
    NAMESPACE ondrel::
    DESTINATION ${package_dir})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/ondrel-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ondrel-config-version.cmake DESTINATION ${package_dir})
