# exportifc_zlib and exportifc_expat for the system that is built for: the system's own, and built from
# Debian's sources where there is no package.

if(DEFINED ENV{XDG_CACHE_HOME})
  set(cache_folder $ENV{XDG_CACHE_HOME})
else()
  set(cache_folder $ENV{HOME}/.cache)
endif()
set(EXPORTIFC_LIBRARY_SOURCES ${cache_folder}/exportifc/sources CACHE PATH
  "Where scripts/library_sources.sh puts sources")

# exportifc_library_of(NAME FOLDER FILES...): a static library of those files.
function(exportifc_library_of name folder)
  list(TRANSFORM ARGN PREPEND ${EXPORTIFC_LIBRARY_SOURCES}/${folder}/ OUTPUT_VARIABLE files)
  foreach(file IN LISTS files)
    if(NOT EXISTS ${file})
      # Without its folder, whose length would have the line broken anywhere.
      cmake_path(GET file FILENAME missing)
      message(FATAL_ERROR "the source ${missing} is not installed: run scripts/setup.sh program")
    endif()
  endforeach()
  add_library(${name} STATIC ${files})
  target_include_directories(${name} SYSTEM PUBLIC ${EXPORTIFC_LIBRARY_SOURCES}/${folder})
  target_compile_options(${name} PRIVATE -w)
endfunction()

# For cmake/portable.cmake; the packages with the headers have them.
if(UNIX AND NOT EMSCRIPTEN)
  find_library(EXPORTIFC_EXPAT_ARCHIVE libexpat.a)
  find_library(EXPORTIFC_ZLIB_ARCHIVE libz.a)
  mark_as_advanced(EXPORTIFC_EXPAT_ARCHIVE EXPORTIFC_ZLIB_ARCHIVE)
endif()

# exportifc_library_found(NAME FOUND TARGET): the system's library; the archive of it in what is portable.
function(exportifc_library_found name found target)
  if(NOT ${found})
    message(FATAL_ERROR "${name} is not installed: run scripts/setup.sh program, or configure with "
      "-DEXPORTIFC_PROGRAM=OFF")
  endif()
  string(TOUPPER ${name} upper)
  set(portable $<BOOL:$<TARGET_PROPERTY:EXPORTIFC_PORTABLE>>)
  target_link_libraries(exportifc_${name} INTERFACE
    $<IF:${portable},${EXPORTIFC_${upper}_ARCHIVE},${target}>)
endfunction()

add_library(exportifc_zlib INTERFACE)
target_compile_definitions(exportifc_zlib INTERFACE ZLIB_CONST)  # its input is const
if(EMSCRIPTEN)
  exportifc_library_of(zlib_of_sources zlib
    adler32.c crc32.c deflate.c inffast.c inflate.c inftrees.c trees.c zutil.c)
  target_link_libraries(exportifc_zlib INTERFACE zlib_of_sources)
else()
  # The Windows program needs no DLL beside it.
  if(WIN32)
    set(ZLIB_USE_STATIC_LIBS ON)
  endif()
  find_package(ZLIB QUIET)
  exportifc_library_found(zlib ZLIB_FOUND ZLIB::ZLIB)
endif()

add_library(exportifc_expat INTERFACE)
if(EMSCRIPTEN OR WIN32)
  exportifc_library_of(expat_of_sources expat/expat/lib xmlparse.c xmlrole.c xmltok.c)
  # What its own configuration would find out. Without XML_DTD it knows no entities of documents.
  set(expat_config "#define XML_NS 1\n#define XML_CONTEXT_BYTES 1024\n#define BYTEORDER 1234\n")
  if(EMSCRIPTEN)
    string(APPEND expat_config "#include <unistd.h>\n#define HAVE_ARC4RANDOM_BUF 1\n"
      "#define arc4random_buf(bytes, size) ((void)getentropy(bytes, size))\n")
  endif()
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/expat/expat_config.h CONTENT "${expat_config}")
  target_include_directories(expat_of_sources PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/expat)
  target_compile_definitions(expat_of_sources PUBLIC XML_STATIC)
  target_link_libraries(exportifc_expat INTERFACE expat_of_sources)
else()
  find_package(EXPAT QUIET)
  exportifc_library_found(expat EXPAT_FOUND EXPAT::EXPAT)
endif()
