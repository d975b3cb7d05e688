# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a source file of the project does not carry its licence line
# near the top, or when a source or document still holds the marks of an
# unfinished merge.
#
#   cmake -DSOURCE_DIR=<project> -P tests/sources.cmake

cmake_policy(VERSION 3.21)

file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR}
     ${SOURCE_DIR}/src/*.h ${SOURCE_DIR}/src/*.cpp
     ${SOURCE_DIR}/tools/*.h ${SOURCE_DIR}/tools/*.cpp
     ${SOURCE_DIR}/tests/*.h ${SOURCE_DIR}/tests/*.cpp ${SOURCE_DIR}/tests/*.cmake
     ${SOURCE_DIR}/fuzz/*.h ${SOURCE_DIR}/fuzz/*.cpp
     ${SOURCE_DIR}/bench/*.h ${SOURCE_DIR}/bench/*.cpp
     ${SOURCE_DIR}/scripts/*.sh ${SOURCE_DIR}/scripts/*.py
     ${SOURCE_DIR}/*CMakeLists.txt)
list(FILTER sources EXCLUDE REGEX "^build")

set(missing "")
list(LENGTH sources count)
foreach(source IN LISTS sources)
    file(READ ${SOURCE_DIR}/${source} head LIMIT 300)
    string(FIND "${head}" "SPDX-License-Identifier: GPL-3.0-or-later" at)
    if(at EQUAL -1)
        string(APPEND missing "\n  ${source}")
    endif()
endforeach()

file(GLOB_RECURSE documents RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/doc/* ${SOURCE_DIR}/packaging/*
     ${SOURCE_DIR}/data/* ${SOURCE_DIR}/*.md)
list(FILTER documents EXCLUDE REGEX "^build|\\.png$|\\.svg$")
set(unmerged "")
foreach(file IN LISTS sources documents)
    file(STRINGS ${SOURCE_DIR}/${file} marks REGEX "^(<<<<<<<|>>>>>>>) ")
    if(marks)
        string(APPEND unmerged "\n  ${file}")
    endif()
endforeach()

if(missing)
    message(FATAL_ERROR "sources: no SPDX line in${missing}")
endif()
if(unmerged)
    message(FATAL_ERROR "sources: the marks of an unfinished merge in${unmerged}")
endif()
message(STATUS "sources: ${count} files, each with its SPDX line; no merge marks")
