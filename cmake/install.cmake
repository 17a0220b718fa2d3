# Where things lie once they are installed: two components, "program" for the run with no window, "window" for the
# window on top of it. src/app/places.h finds them again.
set(own lib/harborlantern)
set(shared share/harborlantern)

install(TARGETS harborlantern RUNTIME DESTINATION ${own} COMPONENT program)
install(FILES packaging/installed DESTINATION ${own} COMPONENT program)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/link)
file(CREATE_LINK ../${own}/harborlantern ${PROJECT_BINARY_DIR}/link/harborlantern SYMBOLIC)
install(FILES ${PROJECT_BINARY_DIR}/link/harborlantern DESTINATION bin COMPONENT program)
install(DIRECTORY lang/ DESTINATION ${shared}/lang COMPONENT program FILES_MATCHING PATTERN "*.dll")
install(FILES man/harborlantern.1 DESTINATION share/man/man1 COMPONENT program)
install(FILES man/de/harborlantern.1 DESTINATION share/man/de/man1 COMPONENT program)
install(FILES packaging/completions/harborlantern.bash DESTINATION share/bash-completion/completions
        RENAME harborlantern COMPONENT program)
install(FILES packaging/completions/_harborlantern DESTINATION share/zsh/vendor-completions COMPONENT program)
install(FILES packaging/completions/harborlantern.fish DESTINATION share/fish/vendor_completions.d COMPONENT program)

if(HARBORLANTERN_WINDOW)
  foreach(part harborlantern-gui harborlantern-media harborlantern-preview harborlantern-preview-pdf)
    if(TARGET ${part})
      install(TARGETS ${part} DESTINATION ${own} COMPONENT window)
    endif()
  endforeach()
  install(DIRECTORY data/icons DESTINATION ${shared} COMPONENT window)
  install(FILES packaging/harborlantern.desktop DESTINATION share/applications COMPONENT window)
  install(FILES packaging/org.example.harborlantern.metainfo.xml DESTINATION share/metainfo COMPONENT window)
  install(FILES data/icons/harborlantern.svg DESTINATION share/icons/hicolor/scalable/apps COMPONENT window)
endif()
