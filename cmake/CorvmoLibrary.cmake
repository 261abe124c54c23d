# The product: corvmo32.dll on Windows, libcorvmo32.so elsewhere. engine/corvmo32.def is the one list of
# what it exports.
set(corvmo_def ${PROJECT_SOURCE_DIR}/engine/corvmo32.def)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${corvmo_def})
file(STRINGS ${corvmo_def} corvmo_exports REGEX "^ +[A-Za-z0-9_]+@[0-9]+$")
list(TRANSFORM corvmo_exports STRIP)

if(WIN32)
    enable_language(RC)
    set(corvmo_resource ${PROJECT_BINARY_DIR}/version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/engine/version.rc.in ${corvmo_resource} @ONLY)
    add_library(corvmo32 SHARED $<TARGET_OBJECTS:corvmo_engine>
        ${PROJECT_SOURCE_DIR}/engine/dll_entry.cpp ${corvmo_resource})
    target_include_directories(corvmo32 PRIVATE ${PROJECT_SOURCE_DIR})
    # Exports carry undecorated names although the functions are __stdcall; the import library still
    # offers the decorated symbols that a __stdcall declaration asks for.
    target_link_libraries(corvmo32 PRIVATE winmm)
    # Without a time stamp the same sources give the same file.
    target_link_options(corvmo32 PRIVATE ${corvmo_def} -Wl,--kill-at -Wl,--no-insert-timestamp)
    set_target_properties(corvmo32 PROPERTIES PREFIX "" LINK_DEPENDS ${corvmo_def})
    add_custom_command(TARGET corvmo32 POST_BUILD
        COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${corvmo_def} --dllname corvmo32.dll
                --output-lib libcorvmo32.dll.a --temp-prefix corvmo32
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
        COMMENT "Import library of corvmo32.dll" VERBATIM)
else()
    add_library(corvmo32 SHARED $<TARGET_OBJECTS:corvmo_engine> $<TARGET_OBJECTS:corvmo_platform>)
    set(corvmo_symbols ${PROJECT_BINARY_DIR}/corvmo32.map)
    list(TRANSFORM corvmo_exports REPLACE "@[0-9]+$" "" OUTPUT_VARIABLE corvmo_names)
    list(JOIN corvmo_names ";\n    " corvmo_names)
    file(CONFIGURE OUTPUT ${corvmo_symbols} CONTENT
"{
global:
    @corvmo_names@;
    corvmo_*;
    InitializeCriticalSection;
    DeleteCriticalSection;
    EnterCriticalSection;
    LeaveCriticalSection;
local:
    *;
};
" @ONLY)
    target_link_options(corvmo32 PRIVATE -Wl,--version-script=${corvmo_symbols} -Wl,--no-undefined-version)
    set_target_properties(corvmo32 PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0
        LINK_DEPENDS ${corvmo_symbols})
    target_link_libraries(corvmo32 PRIVATE corvmo_platform_libraries)
endif()
target_link_libraries(corvmo32 PUBLIC $<BUILD_INTERFACE:corvmo_headers> PRIVATE corvmo_compiler)
