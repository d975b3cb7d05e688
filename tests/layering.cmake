# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a source file includes a header from a layer above its own.
# The layers, lowest first; a file may include its own layer and those below
# (windows use each other freely). The editor in tools/vxedit may use every
# layer but the start-up spine. Qt Core layers may not name Qt Gui or Widgets.
#
#   cmake -DSOURCE_DIR=<project> -P tests/layering.cmake

cmake_policy(VERSION 3.21)

set(layers korva core settings cards drawing controls windows app)
set(core_only korva core settings cards)

file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR}
     ${SOURCE_DIR}/src/*.h ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.in
     ${SOURCE_DIR}/tools/*.h ${SOURCE_DIR}/tools/*.cpp)

set(violations "")
foreach(source IN LISTS sources)
    if(source MATCHES "^src/([a-z]+)/")
        set(own ${CMAKE_MATCH_1})
        list(FIND layers ${own} own_rank)
        if(own_rank EQUAL -1)
            string(APPEND violations "\n  ${source}: folder '${own}' is not a layer")
            continue()
        endif()
    else()
        set(own "tools")
        list(FIND layers app own_rank)
        math(EXPR own_rank "${own_rank} - 1") # everything below the spine
    endif()

    file(STRINGS ${SOURCE_DIR}/${source} includes REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS includes)
        if(line MATCHES "#[ \t]*include[ \t]*\"([^\"]+)\"")
            set(header ${CMAKE_MATCH_1})
            if(header MATCHES "^([a-z]+)/")
                list(FIND layers ${CMAKE_MATCH_1} rank)
                if(rank GREATER own_rank)
                    string(APPEND violations "\n  ${source}: includes ${header} from a layer above")
                endif()
            elseif(NOT own STREQUAL "tools")
                string(APPEND violations "\n  ${source}: '${header}' does not name its layer")
            endif()
        elseif(line MATCHES "#[ \t]*include[ \t]*<Qt(Gui|Widgets|Network)/" AND own IN_LIST core_only)
            string(APPEND violations "\n  ${source}: ${line} in a Qt Core layer")
        endif()
    endforeach()
endforeach()

list(LENGTH sources count)
if(violations)
    message(FATAL_ERROR "Includes that run up the layers:${violations}")
endif()
message(STATUS "layering: ${count} files, every include goes down or sideways")
