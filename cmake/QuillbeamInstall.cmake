# Install rules and the exported package configuration.
#
# Headers go below include/quillbeam/ so that folder names as general as "platform" meet nobody else's; an installed target
# carries that folder as its include path, so that an application writes the same includes as this project does.

include(CMakePackageConfigHelpers)

set(quillbeam_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/QuillbeamAPI")
get_property(quillbeam_libraries GLOBAL PROPERTY QUILLBEAM_LIBRARIES)

install(TARGETS ${quillbeam_libraries}
    EXPORT QuillbeamAPITargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/quillbeam"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/quillbeam")
install(EXPORT QuillbeamAPITargets
    NAMESPACE QuillbeamAPI::
    DESTINATION "${quillbeam_package_dir}")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/QuillbeamAPIConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/cmake/QuillbeamAPIConfig.cmake"
    INSTALL_DESTINATION "${quillbeam_package_dir}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/cmake/QuillbeamAPIConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/cmake/QuillbeamAPIConfig.cmake"
    "${PROJECT_BINARY_DIR}/cmake/QuillbeamAPIConfigVersion.cmake"
    DESTINATION "${quillbeam_package_dir}")
