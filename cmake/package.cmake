# What users unpack: the page that exports, the module, the header for hosts, the program with the
# viewer's page, the library, the samples and the documents. ../package.sh makes packages of it.

set(package_documents
  docs/checks.md docs/exportifc.schema.json docs/guia.md docs/host-guide.md docs/json-output.md docs/known-limits.md
  docs/library.md docs/model-format.md docs/model.schema.json
  docs/profiles.md docs/python.md docs/reliability.md docs/sections.md docs/saf.md docs/tables.md docs/takeoff.md)

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
  examples/export_model.c examples/minimal_host.c examples/run_host.cpp examples/box_answerer.cpp examples/box_answerer.h
  DESTINATION examples)
install(PROGRAMS examples/warehouse.py DESTINATION examples)
install(DIRECTORY python/exportifc DESTINATION python FILES_MATCHING PATTERN "*.py" PATTERN "py.typed")
install(FILES SECURITY.md THIRD-PARTY.md CHANGELOG.md DESTINATION .)

# The C library that files for other Linux systems may ask for: it stands in their README and in the tag of
# the wheel. packaging/make.sh holds the files against it.
set(oldest_glibc 2.35)

# Its own: the project's README is for the folder of the sources, and links into it.
if(WIN32)
  set(command "bin\\exportifc")
  set(module_file "bin/exportIFC.dll")
  set(library_file "bin/exportifc-1.dll")
  set(system_pt "Windows de 64 bits")
  set(system_en "64-bit Windows")
else()
  set(command "bin/exportifc")
  set(module_file "lib/libexportIFC.so")
  set(library_file "lib/libexportifc.so.1")
  set(system_pt "Linux de 64 bits (x86-64) com a glibc ${oldest_glibc} ou mais nova")
  set(system_en "64-bit Linux (x86-64) with glibc ${oldest_glibc} or newer")
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

# For packaging/make.sh.
configure_file(packaging/facts.sh ${CMAKE_BINARY_DIR}/packaging/facts.sh @ONLY)
