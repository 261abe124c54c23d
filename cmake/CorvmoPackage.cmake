# "package": Debian packages of the player with the library, and of what a program built on it needs.
find_program(CORVMO_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT CORVMO_DPKG_SHLIBDEPS)
    message(STATUS "dpkg-shlibdeps is missing: there is no target 'package'")
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvmo32)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own, the first line of its description
set(CPACK_PACKAGE_CONTACT "The corvmo32 authors <maintainers@corvmo32.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL player development)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The library is found beside the player before it is installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

set(CPACK_DEBIAN_PLAYER_PACKAGE_NAME corvmo32)
set(CPACK_DEBIAN_PLAYER_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PLAYER_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PLAYER_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PLAYER_PACKAGE_RECOMMENDS "timgm6mb-soundfont | fluid-soundfont-gm")
set(CPACK_COMPONENT_PLAYER_DESCRIPTION "karaoke player for MIDI songs
Plays Standard MIDI Files on a software synthesizer or any ALSA sequencer
port and shows their words and chords while they are sung, with key, tempo
and mix as the singer likes. Makes sound files of songs, and word files for
other players. The engine is a shared library for other programs.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME corvmo32-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "corvmo32 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "MIDI playback and karaoke engine, for programs
Headers, pkg-config and CMake files of the engine that the package corvmo32
holds: songs played on MIDI outputs, with notifications of words, chords and
progress.")

include(CPack)
