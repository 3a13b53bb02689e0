# Warnings, sanitizers, linker and compiler cache, on one interface target every room links.
add_library(vorle_flags INTERFACE)
# std::stable_sort of libstdc++ 12 uses a function that library itself marks deprecated, and clang
# reports it at our call: hence -Wno-deprecated-declarations.
target_compile_options(vorle_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -Wno-deprecated-declarations -Werror)
target_compile_definitions(vorle_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

if(CMAKE_UNITY_BUILD)
    # A file's own names are then in sight of the files that stand in one text with it.
    target_compile_options(vorle_flags INTERFACE -Wno-shadow)
endif()

if(VORLE_SANITIZE)
    target_compile_options(vorle_flags INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(vorle_flags INTERFACE -fsanitize=address,undefined)
endif()

if(NOT APPLE)
    find_program(VORLE_LLD NAMES ld.lld-19)
    if(VORLE_LLD)
        target_link_options(vorle_flags INTERFACE --ld-path=${VORLE_LLD})
    endif()
endif()

find_program(VORLE_CCACHE ccache)
if(VORLE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${VORLE_CCACHE})
endif()
