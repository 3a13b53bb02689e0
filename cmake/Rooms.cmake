# vorle_room(NAME SOURCES ... LINKS ...): one static library a room, with the shared flags and
# the shared precompiled Qt headers.
function(vorle_room name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(vorle_${name} STATIC ${ARG_SOURCES})
    target_include_directories(vorle_${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(vorle_${name} PUBLIC ${ARG_LINKS} PRIVATE vorle_flags ${ARG_PRIVATE_LINKS})
    vorle_precompile(vorle_${name})
endfunction()

# The headers nearly every file reads, compiled once and shared by every target.
function(vorle_precompile target)
    # ccache accepts a precompiled header only when it carries no timestamp.
    target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
    if(target STREQUAL "vorle_base")
        target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/base/Precompiled.h)
    else()
        target_precompile_headers(${target} REUSE_FROM vorle_base)
    endif()
endfunction()
