# What strangers find after `cmake --install`: the libraries with their CMake package and pkg-config file.
# Headers, modules and the program are installed where they are declared. The whole prefix may be moved.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY KESTO_SHARED_LIBRARIES)
if(NOT libraries)
    return()
endif()

foreach(library IN LISTS libraries)
    target_compile_features(${library} INTERFACE cxx_std_20) # the headers need it
endforeach()
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KestoThumbnailer)
install(TARGETS ${libraries} EXPORT KestoThumbnailerTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KestoThumbnailerTargets NAMESPACE KestoThumbnailer:: DESTINATION ${package_folder})

configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/KestoThumbnailerConfig.cmake.in
    ${PROJECT_BINARY_DIR}/package/KestoThumbnailerConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/package/KestoThumbnailerConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/KestoThumbnailerConfig.cmake
    ${PROJECT_BINARY_DIR}/package/KestoThumbnailerConfigVersion.cmake
    DESTINATION ${package_folder})

# pkg-config tells the file's own folder, from which the prefix is as many steps up as these folders are deep.
file(RELATIVE_PATH steps_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
list(TRANSFORM libraries PREPEND -l OUTPUT_VARIABLE link_flags)
list(JOIN link_flags " " link_flags)
set(compile_flags "")
if(KESTO_CHECK_LOCK_ORDER)
    set(compile_flags -DKESTO_CHECK_LOCK_ORDER)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/KestoThumbnailer.pc.in
    ${PROJECT_BINARY_DIR}/package/KestoThumbnailer.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/KestoThumbnailer.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
