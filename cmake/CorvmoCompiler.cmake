# Warnings, sanitizers and code generation that every target of the project shares.
add_library(corvmo_compiler INTERFACE)

target_compile_options(corvmo_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual>)

if(CORVMO_WARNINGS_AS_ERRORS)
    target_compile_options(corvmo_compiler INTERFACE -Werror)
endif()

if(CORVMO_SANITIZE)
    # Whole-program switches: a test binary mixes objects of several targets.
    add_compile_options(-fsanitize=${CORVMO_SANITIZE} -fno-omit-frame-pointer -g)
    add_link_options(-fsanitize=${CORVMO_SANITIZE})
    if(CORVMO_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

if(WIN32)
    # Oldest system that the program asks for: Windows XP.
    target_compile_definitions(corvmo_compiler INTERFACE
        WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0501 WINVER=0x0501)
    # Callbacks come from the system with a stack that is only 4-byte aligned.
    target_compile_options(corvmo_compiler INTERFACE -mstackrealign)
    target_link_options(corvmo_compiler INTERFACE
        -static -Wl,--nxcompat -Wl,--dynamicbase -Wl,--major-subsystem-version=4
        -Wl,--minor-subsystem-version=0)
endif()
