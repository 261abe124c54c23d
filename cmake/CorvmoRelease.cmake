# "release": the archive that a user of the DLL takes home.
find_package(Python3 COMPONENTS Interpreter)
find_program(CORVMO_DOXYGEN doxygen)
find_program(CORVMO_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14)
if(NOT (Python3_FOUND AND CORVMO_DOXYGEN AND CORVMO_LLVM_DLLTOOL))
    message(STATUS "Python 3, Doxygen or llvm-dlltool is missing: there is no target 'release'")
    return()
endif()

configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(reference
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${PROJECT_BINARY_DIR}/reference
    COMMAND ${CORVMO_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMENT "Reference of the public headers" VERBATIM)
add_custom_target(release
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/make_release
            --build ${PROJECT_BINARY_DIR} --version ${PROJECT_VERSION}
            --strip ${CMAKE_STRIP} --dlltool ${CORVMO_LLVM_DLLTOOL}
    DEPENDS corvmo32 karaoke play_song reference
    COMMENT "Release archive" VERBATIM)
add_dependencies(release corvmo32 karaoke play_song reference)
