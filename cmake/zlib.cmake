# exportifc_zlib: zlib for the system that is built for.

# The Windows program needs no DLL beside it.
if(WIN32)
  set(ZLIB_USE_STATIC_LIBS ON)
endif()
find_package(ZLIB QUIET)
if(NOT ZLIB_FOUND)
  message(FATAL_ERROR "zlib is not installed: run scripts/setup.sh program, or configure with "
    "-DEXPORTIFC_PROGRAM=OFF")
endif()
add_library(exportifc_zlib INTERFACE)
target_link_libraries(exportifc_zlib INTERFACE ZLIB::ZLIB)
target_compile_definitions(exportifc_zlib INTERFACE ZLIB_CONST)  # its input is const
