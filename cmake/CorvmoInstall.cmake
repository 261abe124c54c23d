# What "cmake --install" puts on a Linux system. Everything finds its neighbours by relative paths, so that
# the tree may be moved. On Windows the release archive takes this place.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(corvmo_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/corvmo32)
set(corvmo_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/corvmo32)

target_include_directories(corvmo32 INTERFACE $<INSTALL_INTERFACE:${corvmo_include_dir}>)
install(TARGETS corvmo32 EXPORT corvmo32
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT player NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${PROJECT_SOURCE_DIR}/platform/linux/include/
    DESTINATION ${corvmo_include_dir} COMPONENT development FILES_MATCHING PATTERN "*.h")

# The library hides what it needs itself, so that the list of targets is the whole package.
install(EXPORT corvmo32 NAMESPACE corvmo32:: FILE corvmo32Config.cmake DESTINATION ${corvmo_package_dir}
    COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/corvmo32ConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/corvmo32ConfigVersion.cmake DESTINATION ${corvmo_package_dir}
    COMPONENT development)

file(RELATIVE_PATH corvmo_prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/corvmo32.pc.in ${PROJECT_BINARY_DIR}/corvmo32.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/corvmo32.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright
    COMPONENT player)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR}-dev RENAME copyright
    COMPONENT development)
if(TARGET karaoke)
    include(CorvmoInstallPlayer)
endif()
