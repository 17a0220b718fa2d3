# Where the parts are installed. There are two components: "program" for the run without a window, and
# "window" for the window on top of it. src/app/places.h finds the parts.
include(GNUInstallDirs)
set(own ${CMAKE_INSTALL_LIBDIR}/harborlantern)
set(shared ${CMAKE_INSTALL_DATADIR}/harborlantern)
set(full_own ${CMAKE_INSTALL_FULL_LIBDIR}/harborlantern)

install(TARGETS harborlantern RUNTIME DESTINATION ${own} COMPONENT program)
file(RELATIVE_PATH own_to_shared ${full_own} ${CMAKE_INSTALL_FULL_DATADIR}/harborlantern)
configure_file(packaging/installed.in installed @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/installed DESTINATION ${own} COMPONENT program)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/link)
file(RELATIVE_PATH bin_to_own ${CMAKE_INSTALL_FULL_BINDIR} ${full_own})
foreach(command harborlantern harborlantern-gui)
  file(CREATE_LINK ${bin_to_own}/harborlantern ${PROJECT_BINARY_DIR}/link/${command} SYMBOLIC)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/link/harborlantern DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(DIRECTORY lang/ DESTINATION ${shared}/lang COMPONENT program FILES_MATCHING PATTERN "*.dll")
install(FILES man/harborlantern.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES man/de/harborlantern.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1 COMPONENT program)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg")
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME NEWS COMPONENT program)
set(completions ${PROJECT_SOURCE_DIR}/packaging/completions)
install(FILES ${completions}/harborlantern.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME harborlantern COMPONENT program)
install(FILES ${completions}/_harborlantern DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT program)
install(FILES ${completions}/harborlantern.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
        COMPONENT program)

install(PROGRAMS packaging/fleet/fleet DESTINATION ${shared}/fleet COMPONENT program)
install(FILES packaging/fleet/grown.jq packaging/fleet/package.json packaging/fleet/parquet.js packaging/fleet/parquet.sql
        DESTINATION ${shared}/fleet COMPONENT program)

# If the publisher does not provide what only the publisher knows, it is left out of the entry for software
# catalogues.
set(HARBORLANTERN_SCREENSHOTS "" CACHE STRING "Address below which a catalogue finds the pictures of docs/")
set(metainfo_url)
if(HARBORLANTERN_HOMEPAGE)
  set(metainfo_url "  <url type=\"homepage\">${HARBORLANTERN_HOMEPAGE}</url>\n")
endif()
set(metainfo_screenshots)
if(HARBORLANTERN_SCREENSHOTS)
  set(pictures)
  foreach(picture window window-dark largest preview)
    string(APPEND pictures "    <screenshot><image>${HARBORLANTERN_SCREENSHOTS}/${picture}.png</image></screenshot>\n")
  endforeach()
  string(REGEX REPLACE "^    <screenshot>" "    <screenshot type=\"default\">" pictures "${pictures}")
  set(metainfo_screenshots "  <screenshots>\n${pictures}  </screenshots>\n")
endif()

if(HARBORLANTERN_WINDOW)
  # The window's command is the program itself; it is a separate file so that what starts a window comes with
  # the window.
  install(FILES ${PROJECT_BINARY_DIR}/link/harborlantern-gui DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT window)
  configure_file(packaging/harborlantern.metainfo.xml.in harborlantern.metainfo.xml @ONLY)
  foreach(part harborlantern-gui harborlantern-clipboard harborlantern-media harborlantern-preview
          harborlantern-preview-pdf)
    if(TARGET ${part})
      install(TARGETS ${part} DESTINATION ${own} COMPONENT window)
    endif()
  endforeach()
  install(DIRECTORY data/icons DESTINATION ${shared} COMPONENT window)
  install(FILES packaging/harborlantern.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT window)
  install(FILES ${PROJECT_BINARY_DIR}/harborlantern.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT window)
  install(FILES data/icons/harborlantern.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT window)
endif()
