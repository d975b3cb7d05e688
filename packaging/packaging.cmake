# SPDX-License-Identifier: GPL-3.0-or-later
# Installing Vocabrix, and its Debian package (`make install`, `make deb`).
#
# Installed, the programs keep their own files beside them, where they look
# for them: the example chapters and the manual, in lib/vocabrix, with links
# in bin. What the desktop reads (entries, metainfo, file types, icons) and
# the manual pages go to their usual places under share.
include(GNUInstallDirs)

set(vocabrix_packaging ${CMAKE_CURRENT_LIST_DIR})
set(vocabrix_generated ${CMAKE_BINARY_DIR}/packaging)

# Not CMAKE_INSTALL_LIBDIR: the program's folder is the same on every system
# (no multiarch or lib64 part), so the links in bin always reach it.
set(VOCABRIX_INSTALL_DIR lib/vocabrix)
set(VOCABRIX_PACKAGE_CONTACT "Quillmere <packages@vocabrix.example.org>")

# The release day as the Debian changelog writes it ("Sat, 21 Nov 2026").
string(REGEX MATCH "^([0-9][0-9][0-9][0-9])-([0-9][0-9])-([0-9][0-9])$" vocabrix_date_ok
       "${VOCABRIX_RELEASE_DATE}")
if(NOT vocabrix_date_ok)
    message(FATAL_ERROR "VOCABRIX_RELEASE_DATE must be YYYY-MM-DD, not '${VOCABRIX_RELEASE_DATE}'")
endif()
set(vocabrix_day_text ${CMAKE_MATCH_3})
math(EXPR vocabrix_year "${CMAKE_MATCH_1}")
math(EXPR vocabrix_month "${CMAKE_MATCH_2} - 1")
math(EXPR vocabrix_day "${CMAKE_MATCH_3}")
set(vocabrix_month_offsets 0 3 2 5 0 3 5 1 4 6 2 4)
list(GET vocabrix_month_offsets ${vocabrix_month} vocabrix_offset)
set(vocabrix_y ${vocabrix_year})
if(vocabrix_month LESS 2)
    math(EXPR vocabrix_y "${vocabrix_y} - 1")
endif()
math(EXPR vocabrix_weekday "(${vocabrix_y} + ${vocabrix_y} / 4 - ${vocabrix_y} / 100 + ${vocabrix_y} / 400 + ${vocabrix_offset} + ${vocabrix_day}) % 7")
set(vocabrix_weekdays Sun Mon Tue Wed Thu Fri Sat)
set(vocabrix_months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
list(GET vocabrix_weekdays ${vocabrix_weekday} vocabrix_weekday_name)
list(GET vocabrix_months ${vocabrix_month} vocabrix_month_name)
set(VOCABRIX_CHANGELOG_DATE
    "${vocabrix_weekday_name}, ${vocabrix_day_text} ${vocabrix_month_name} ${vocabrix_year} 12:00:00 +0000")
# The manual pages' footer date, as they usually write it ("November 2026").
set(vocabrix_month_long January February March April May June July August September October
                        November December)
list(GET vocabrix_month_long ${vocabrix_month} vocabrix_month_long_name)
set(VOCABRIX_MANUAL_DATE "${vocabrix_month_long_name} ${vocabrix_year}")

configure_file(${vocabrix_packaging}/org.example.vocabrix.metainfo.xml.in
               ${vocabrix_generated}/org.example.vocabrix.metainfo.xml @ONLY)
configure_file(${vocabrix_packaging}/changelog.in ${vocabrix_generated}/changelog @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/doc/man/vocabrix.1.in ${vocabrix_generated}/vocabrix.1 @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/doc/man/vxedit.1.in ${vocabrix_generated}/vxedit.1 @ONLY)

# Manual pages and the changelog are installed compressed, as Debian wants
# them: at the highest level, without a time stamp.
find_program(VOCABRIX_GZIP gzip)
set(vocabrix_compressed)
foreach(name vocabrix.1 vxedit.1 changelog)
    if(VOCABRIX_GZIP)
        add_custom_command(
            OUTPUT ${vocabrix_generated}/${name}.gz
            COMMAND ${VOCABRIX_GZIP} -9nf -k ${vocabrix_generated}/${name}
            DEPENDS ${vocabrix_generated}/${name}
            COMMENT "Compressing ${name}"
            VERBATIM)
        list(APPEND vocabrix_compressed ${vocabrix_generated}/${name}.gz)
    endif()
endforeach()
add_custom_target(packaging_files ALL DEPENDS ${vocabrix_compressed})

install(TARGETS vocabrix vxedit RUNTIME DESTINATION ${VOCABRIX_INSTALL_DIR})
install(FILES ${CMAKE_BINARY_DIR}/ex1.zel ${CMAKE_BINARY_DIR}/ex2.zel ${CMAKE_BINARY_DIR}/ex3.zel
              ${CMAKE_BINARY_DIR}/ex4.zel ${CMAKE_BINARY_DIR}/ex5.zel
        DESTINATION ${VOCABRIX_INSTALL_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/doc/index.html DESTINATION ${VOCABRIX_INSTALL_DIR}/doc)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/doc/screenshots DESTINATION ${VOCABRIX_INSTALL_DIR}/doc
        FILES_MATCHING PATTERN "*.png")
foreach(program vocabrix vxedit)
    install(CODE "file(MAKE_DIRECTORY \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR})
                  file(CREATE_LINK ../${VOCABRIX_INSTALL_DIR}/${program}
                       \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${program} SYMBOLIC)")
endforeach()

set(vocabrix_share ${CMAKE_INSTALL_DATADIR})
install(FILES ${vocabrix_packaging}/vocabrix.desktop ${vocabrix_packaging}/vxedit.desktop
        DESTINATION ${vocabrix_share}/applications)
install(FILES ${vocabrix_generated}/org.example.vocabrix.metainfo.xml
        DESTINATION ${vocabrix_share}/metainfo)
install(FILES ${vocabrix_packaging}/vocabrix-mime.xml DESTINATION ${vocabrix_share}/mime/packages
        RENAME vocabrix.xml)
install(FILES ${vocabrix_packaging}/vocabrix.svg
        DESTINATION ${vocabrix_share}/icons/hicolor/scalable/apps)
install(FILES ${vocabrix_packaging}/application-x-vocabrix-chapter.svg
              ${vocabrix_packaging}/application-x-vocabrix-progress.svg
        DESTINATION ${vocabrix_share}/icons/hicolor/scalable/mimetypes)
install(FILES ${vocabrix_packaging}/copyright DESTINATION ${vocabrix_share}/doc/vocabrix)
if(VOCABRIX_GZIP)
    install(FILES ${vocabrix_generated}/vocabrix.1.gz ${vocabrix_generated}/vxedit.1.gz
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${vocabrix_generated}/changelog.gz DESTINATION ${vocabrix_share}/doc/vocabrix)
else()
    install(FILES ${vocabrix_generated}/vocabrix.1 ${vocabrix_generated}/vxedit.1
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# Installed straight onto this machine (no DESTDIR, as a package stages it),
# the desktop learns the new file types and entries at once; a package leaves
# that to the system's triggers.
install(CODE [[
    if("$ENV{DESTDIR}" STREQUAL "")
        find_program(vocabrix_update_mime update-mime-database)
        find_program(vocabrix_update_desktop update-desktop-database)
        if(vocabrix_update_mime)
            execute_process(COMMAND ${vocabrix_update_mime} "${CMAKE_INSTALL_PREFIX}/share/mime")
        endif()
        if(vocabrix_update_desktop)
            execute_process(COMMAND ${vocabrix_update_desktop} -q "${CMAKE_INSTALL_PREFIX}/share/applications")
        endif()
    endif()
]])

# The Debian package: one package with both programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vocabrix)
set(CPACK_PACKAGE_VENDOR Quillmere)
set(CPACK_PACKAGE_CONTACT "${VOCABRIX_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "vocabulary trainer with flash cards")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${vocabrix_packaging}/description.txt)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VOCABRIX_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${PROJECT_HOMEPAGE_URL}")
# The libraries come from the binaries; Qt's platform plugins, without which
# no window opens, are only recommended by Qt's own packages.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-qpa-plugins)
# Cards are spoken through speech-dispatcher's plugin and espeak-ng's voices;
# without them everything else works and the speak command says why not.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-speech-speechd-plugin, speech-dispatcher-espeak-ng")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${vocabrix_packaging}/prerm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
