# Headers, library, client and the CMake package with the target ondrel::ondrel.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ondrel)

install(
    TARGETS ondrel
    EXPORT ondrel_targets
    INCLUDES
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ondrel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

if(ONDREL_BUILD_CLIENT)
    # An installed tree can be moved: the client finds a shared library relative to itself.
    file(RELATIVE_PATH library_dir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(ondrel_client PROPERTIES INSTALL_RPATH $ORIGIN/${library_dir})
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
