# Included before project(), whose own words for a missing compiler or build program are long and do
# not say what to install.

# exportifc_needs(PROGRAM GROUP): PROGRAM is on the path, or the message names the group that has it.
function(exportifc_needs program group)
  find_program(found NAMES ${program} NO_CACHE)
  if(NOT found)
    message(FATAL_ERROR "${program} is not installed: run scripts/setup.sh ${group}")
  endif()
endfunction()

if(CMAKE_GENERATOR MATCHES "Ninja" AND NOT CMAKE_MAKE_PROGRAM)
  exportifc_needs(ninja program)
endif()
foreach(compiler ${CMAKE_C_COMPILER} ${CMAKE_CXX_COMPILER})
  if(compiler MATCHES "clang")
    exportifc_needs(${compiler} test)
  else()
    exportifc_needs(${compiler} program)
  endif()
endforeach()
if(CMAKE_TOOLCHAIN_FILE MATCHES "mingw-w64")
  exportifc_needs(x86_64-w64-mingw32-g++-posix build)
endif()
