# What `cmake --install` puts where, and the Debian packages `kavo` and `kavo-office` that CPack makes of it:
# scripts/release.sh. Natively only; the Windows packages are in packaging/windows.
include(GNUInstallDirs)
find_package(Python3 COMPONENTS Interpreter)
set(made ${CMAKE_BINARY_DIR}/share)

install(TARGETS kavo RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT kavo)
if(TARGET kavo_office_engine)
  # Where office_programs.cpp looks for it beside the command's folder.
  set_target_properties(kavo_office_engine PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
  install(TARGETS kavo_office_engine LIBRARY DESTINATION lib/kavo COMPONENT kavo-office)
endif()

if(Python3_FOUND)
  # Manual pages and completions are made of the command's own help.
  set(maker ${PROJECT_SOURCE_DIR}/scripts/make-command-docs.py)
  add_custom_command(
    OUTPUT ${made}/complete
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${made}
    COMMAND ${Python3_EXECUTABLE} ${maker} $<TARGET_FILE:kavo> man ${made}/man1
    COMMAND ${Python3_EXECUTABLE} ${maker} $<TARGET_FILE:kavo> completion ${made}/completion
    COMMAND ${CMAKE_COMMAND} -E touch ${made}/complete
    DEPENDS kavo ${maker}
    VERBATIM)
  add_custom_target(kavo_descriptions ALL DEPENDS ${made}/complete)
  install(DIRECTORY ${made}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT kavo)
  install(FILES ${made}/completion/kavo DESTINATION share/bash-completion/completions COMPONENT kavo)
  install(FILES ${made}/completion/_kavo DESTINATION share/zsh/vendor-completions COMPONENT kavo)
  install(FILES ${made}/completion/kavo.fish DESTINATION share/fish/vendor_completions.d COMPONENT kavo)
endif()

set(documents ${CMAKE_INSTALL_DATADIR}/doc/kavo)
install(FILES README.md CHANGELOG.md DESTINATION ${documents} COMPONENT kavo)
install(DIRECTORY docs DESTINATION ${documents} COMPONENT kavo)
install(DIRECTORY samples/ DESTINATION ${documents}/examples COMPONENT kavo)
# The notices of the libraries that are linked in, as Debian's packages state them.
set(notices ${CMAKE_BINARY_DIR}/copyright)
file(WRITE ${notices} "KAVO File Processing Wizard\n\nIt contains the libraries below.\n")
foreach(package libexpat1-dev nlohmann-json3-dev libcli11-dev)
  if(EXISTS /usr/share/doc/${package}/copyright)
    file(READ /usr/share/doc/${package}/copyright notice)
    file(APPEND ${notices} "\n==== ${package} ====\n\n${notice}")
  endif()
endforeach()
install(FILES ${notices} DESTINATION ${documents} COMPONENT kavo)
install(FILES ${notices} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kavo-office COMPONENT kavo-office)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kavo)
set(CPACK_PACKAGE_CONTACT "KAVO maintainers <kavo@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Prepares documents for translation and rebuilds them")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL kavo)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_KAVO_PACKAGE_NAME kavo)
set(CPACK_DEBIAN_KAVO_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_KAVO_PACKAGE_SUGGESTS kavo-office)
set(CPACK_COMPONENT_KAVO_DESCRIPTION
  "The kavo command takes the translatable texts out of server pages, HTML,
FrameMaker MIF, RTF, resource scripts and texts, and puts the translation
back: what goes in comes out to the byte, with only the translation changed.
Bilingual documents are XLIFF 1.2.")
if(TARGET kavo_office_engine)
  list(APPEND CPACK_COMPONENTS_ALL kavo-office)
  set(CPACK_DEBIAN_KAVO-OFFICE_PACKAGE_NAME kavo-office)
  set(CPACK_DEBIAN_KAVO-OFFICE_PACKAGE_DEPENDS
    "kavo (= ${PROJECT_VERSION}), libreoffice-writer-nogui, libreoffice-impress-nogui, libreoffice-calc-nogui")
  set(CPACK_DEBIAN_KAVO-OFFICE_PACKAGE_SHLIBDEPS ON)
  # LibreOffice's own libraries have a folder of theirs, which is not on the loader's path.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS /usr/lib/libreoffice/program)
  set(CPACK_COMPONENT_KAVO-OFFICE_DESCRIPTION
    "Word documents, presentations and workbooks for the kavo command, converted
through LibreOffice.")
endif()
include(CPack)
