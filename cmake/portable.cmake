# The program and the shared library for other Linux systems: the same objects, with expat, zlib and the
# C++ library in the files. What they still ask for is the C library; packaging/make.sh looks how new.
#
# The module is not among them: its exceptions end in the host, and both need the same C++ library.

# exportifc_portable(TARGET): links it so, into a folder of its own.
function(exportifc_portable target)
  set_target_properties(${target} PROPERTIES
    EXPORTIFC_PORTABLE ON
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/portable
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/portable)
  target_sources(${target} PRIVATE packaging/random_bytes.c)
  target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc)
endfunction()

add_executable(exportifc_program_portable cli/main.cpp)
set_target_properties(exportifc_program_portable PROPERTIES OUTPUT_NAME exportifc)
target_link_libraries(exportifc_program_portable PRIVATE exportifc_cli exportifc_options)
exportifc_portable(exportifc_program_portable)

add_library(exportifc_shared_portable SHARED $<TARGET_OBJECTS:exportifc_api>)
exportifc_link_shared(exportifc_shared_portable)
exportifc_portable(exportifc_shared_portable)

install(TARGETS exportifc_program_portable exportifc_shared_portable COMPONENT portable EXCLUDE_FROM_ALL
  RUNTIME DESTINATION bin LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
