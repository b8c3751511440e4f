# The zip for users: the page that exports, the module, the header for hosts, the program with the
# viewer's page, the samples and the documents.
#
#   page/build.sh && cmake --build --preset windows && cpack --config build/windows/CPackConfig.cmake

set(package_documents
  docs/checks.md docs/guia.md docs/host-guide.md docs/known-limits.md docs/model-format.md docs/model.schema.json
  docs/profiles.md docs/reliability.md docs/sections.md docs/takeoff.md)

if(WIN32)
  set(module_folder bin)
else()
  set(module_folder lib)
endif()
install(TARGETS exportIFC LIBRARY DESTINATION ${module_folder} RUNTIME DESTINATION bin)
install(DIRECTORY include/ DESTINATION include)
install(FILES
  samples/README.md samples/familias.json samples/familias.txt samples/galpao.json samples/galpao.txt
  DESTINATION samples)
install(FILES ${package_documents} DESTINATION docs)
install(DIRECTORY docs/profiles docs/pictures DESTINATION docs)
install(FILES
  examples/minimal_host.c examples/run_host.cpp examples/box_answerer.cpp examples/box_answerer.h
  DESTINATION examples)
install(FILES SECURITY.md THIRD-PARTY.md CHANGELOG.md DESTINATION .)

# Its own: the project's README is for the folder of the sources, and links into it.
if(WIN32)
  set(command "bin\\exportifc")
  set(module_file "bin/exportIFC.dll")
else()
  set(command "bin/exportifc")
  set(module_file "lib/libexportIFC.so")
endif()
configure_file(packaging/README.md ${CMAKE_BINARY_DIR}/packaging/README.md @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/README.md DESTINATION .)

if(EXPORTIFC_PROGRAM)
  install(TARGETS exportifc_program RUNTIME DESTINATION bin)
  # A program without its page could not `view`.
  set(page ${CMAKE_SOURCE_DIR}/page/dist/viewer.html)
  install(CODE "if(NOT EXISTS \"${page}\")
    message(FATAL_ERROR \"page/dist/viewer.html is missing: run page/build.sh\")
  endif()")
  install(FILES ${page} DESTINATION bin)
  install(FILES ${CMAKE_SOURCE_DIR}/page/dist/exportifc.html DESTINATION .)
  install(FILES docs/exportifc.1 DESTINATION share/man/man1)
  install(FILES docs/exportifc.bash DESTINATION share/bash-completion/completions RENAME exportifc)
endif()

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME exportIFC)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Exports structural models as IFC2X3 files")
if(WIN32)
  set(CPACK_PACKAGE_FILE_NAME exportIFC-${PROJECT_VERSION}-windows)
else()
  set(CPACK_PACKAGE_FILE_NAME exportIFC-${PROJECT_VERSION}-linux)
endif()
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
