# Installation into any prefix (cmake --install BUILD --prefix DIR): the two
# programs, the default program folder as read-only data, the example map,
# the launcher, the icons, the software centre's metadata, the map file type
# and the manual pages.
#
#   bin/korvane-mapedit, bin/korvane-map
#   share/korvane-mapedit/                 the default program folder
#   share/doc/korvane-mapedit/             README.md, examples/example.map ...
#   share/applications/ID.desktop          the launcher
#   share/metainfo/ID.metainfo.xml         AppStream
#   share/mime/packages/ID.xml             the map file type
#   share/icons/hicolor/*/apps/ID.{png,svg}
#   share/man/man1/korvane-map.1.gz, korvane-mapedit.1.gz
if(NOT TARGET korvane-mapedit OR NOT TARGET korvane-map)
  return()
endif()

include(GNUInstallDirs)
# Named after the package, not after the project.
set(KV_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/korvane-mapedit)

set(KV_APP_ID org.korvane.MapEditor)
set(KV_PROJECT_URL "https://korvane.org/mapedit" CACHE STRING "The project's home page")
set(KV_SCREENSHOT_URL "${KV_PROJECT_URL}/docs" CACHE STRING "Where the README's screenshots (docs/*.png) are published")

# The programs find the default data as ../share/korvane-mapedit beside
# their own folder.
file(RELATIVE_PATH kv_data_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/korvane-mapedit)
if(NOT kv_data_from_bin STREQUAL "../share/korvane-mapedit")
  message(WARNING "The programs look for their default data in ../share/korvane-mapedit beside them, "
                  "but it is installed as ${kv_data_from_bin}: first runs will ask for --app")
endif()

# The icon, drawn by the data generator.
set(KV_ICON_DIR ${CMAKE_BINARY_DIR}/icons)
set(KV_ICON_STAMP ${CMAKE_BINARY_DIR}/kv_icons.stamp)
add_custom_command(
  OUTPUT ${KV_ICON_STAMP}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${KV_ICON_DIR}
  COMMAND kv_gen_data --icons ${KV_ICON_DIR} ${KV_APP_ID} ${CMAKE_SOURCE_DIR}/tools/data
  COMMAND ${CMAKE_COMMAND} -E touch ${KV_ICON_STAMP}
  DEPENDS kv_gen_data ${CMAKE_SOURCE_DIR}/tools/data/nations.txt
  COMMENT "Drawing the application icon into ${KV_ICON_DIR}"
  VERBATIM)

# Metadata and manual pages, with the version of the build.
set(KV_DIST_DIR ${CMAKE_BINARY_DIR}/dist)
configure_file(${CMAKE_SOURCE_DIR}/desktop/${KV_APP_ID}.metainfo.xml.in ${KV_DIST_DIR}/${KV_APP_ID}.metainfo.xml
               @ONLY)
set(KV_MAN_PAGES)
foreach(kv_page korvane-map korvane-mapedit)
  configure_file(${CMAKE_SOURCE_DIR}/man/${kv_page}.1.in ${KV_DIST_DIR}/${kv_page}.1 @ONLY)
  add_custom_command(
    OUTPUT ${KV_DIST_DIR}/${kv_page}.1.gz
    COMMAND gzip -9 -n -f -k ${KV_DIST_DIR}/${kv_page}.1
    DEPENDS ${KV_DIST_DIR}/${kv_page}.1
    VERBATIM)
  list(APPEND KV_MAN_PAGES ${KV_DIST_DIR}/${kv_page}.1.gz)
endforeach()
add_custom_target(kv_desktop_files ALL DEPENDS ${KV_ICON_STAMP} ${KV_MAN_PAGES})

install(TARGETS korvane-mapedit korvane-map RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${KV_DEFAULT_DATA_DIR}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/korvane-mapedit
        PATTERN .kv_generated EXCLUDE)
file(GLOB KV_EXAMPLE_FILES ${CMAKE_SOURCE_DIR}/examples/example.*)
install(FILES ${KV_EXAMPLE_FILES} DESTINATION ${KV_DOC_DIR}/examples)
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${KV_DOC_DIR})
install(FILES ${CMAKE_SOURCE_DIR}/desktop/${KV_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${KV_DIST_DIR}/${KV_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/${KV_APP_ID}.mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
        RENAME ${KV_APP_ID}.xml)
install(DIRECTORY ${KV_ICON_DIR}/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
install(FILES ${KV_MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# Installed straight onto a system (no DESTDIR, as a package build has),
# the desktop's caches of the prefix learn the file type and the launcher at
# once; a package leaves that to the triggers of the system it is installed on.
install(CODE "
  set(kv_share \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}\")
  if(\"\$ENV{DESTDIR}\" STREQUAL \"\" AND NOT CMAKE_INSTALL_PREFIX MATCHES \"/_CPack_Packages/\")
    find_program(kv_update_mime update-mime-database)
    find_program(kv_update_desktop update-desktop-database)
    if(kv_update_mime)
      message(STATUS \"Updating the file types of \${kv_share}/mime\")
      execute_process(COMMAND \${kv_update_mime} \"\${kv_share}/mime\" OUTPUT_QUIET ERROR_QUIET)
    endif()
    if(kv_update_desktop)
      message(STATUS \"Updating the launchers of \${kv_share}/applications\")
      execute_process(COMMAND \${kv_update_desktop} \"\${kv_share}/applications\" OUTPUT_QUIET ERROR_QUIET)
    endif()
  endif()
")

# The tests run both programs and the generator's icon mode.
if(TARGET korvane_gui_tests)
  add_dependencies(korvane_gui_tests korvane-mapedit)
  target_compile_definitions(korvane_gui_tests PRIVATE KV_EXPECTED_VERSION="${KV_VERSION}"
                             KV_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
endif()

include(${CMAKE_CURRENT_LIST_DIR}/Package.cmake)
