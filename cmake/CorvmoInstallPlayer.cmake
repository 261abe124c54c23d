# The player with its manual, its completion and songs to try it with.
file(RELATIVE_PATH corvmo_lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
set_target_properties(karaoke PROPERTIES INSTALL_RPATH "$ORIGIN/${corvmo_lib_from_bin}")
install(TARGETS karaoke RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT player OPTIONAL)

install(FILES ${PROJECT_SOURCE_DIR}/hosts/karaoke/karaoke.bash RENAME karaoke COMPONENT player
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
file(GLOB corvmo_songs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/songs/*.kar ${PROJECT_SOURCE_DIR}/songs/*.mid)
install(FILES ${corvmo_songs} DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT player)

# Without its name and time in it, a compressed file depends on its contents alone.
function(corvmo_install_compressed source name destination)
    set(compressed ${PROJECT_BINARY_DIR}/${name}.gz)
    add_custom_command(OUTPUT ${compressed} DEPENDS ${source} VERBATIM
        COMMAND sh -c "gzip -9n <\"$1\" >\"$2\"" sh ${source} ${compressed})
    add_custom_target(${name}_compressed ALL DEPENDS ${compressed})
    install(FILES ${compressed} DESTINATION ${destination} COMPONENT player)
endfunction()
corvmo_install_compressed(${PROJECT_SOURCE_DIR}/hosts/karaoke/karaoke.1 karaoke.1 ${CMAKE_INSTALL_MANDIR}/man1)
corvmo_install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${CMAKE_INSTALL_DOCDIR})
