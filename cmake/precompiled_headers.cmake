# Headers of others that most files of a target include, compiled once for it.
#
# Off by default: without them a file that forgets an include does not compile. What is delivered is built so by GCC and for
# the page.

option(EXPORTIFC_PRECOMPILE "Compile the headers of libraries once a target" OFF)

set(precompiled_standard_headers
  algorithm array charconv cmath cstddef cstdint cstring filesystem fstream functional iterator limits map
  memory optional set span sstream stdexcept string string_view system_error utility vector)

# exportifc_precompile(TARGET HEADER...): those, besides the standard library's.
function(exportifc_precompile target)
  if(EXPORTIFC_PRECOMPILE)
    list(TRANSFORM precompiled_standard_headers REPLACE "(.+)" "$<$<COMPILE_LANGUAGE:CXX>:<\\1$<ANGLE-R>>" OUTPUT_VARIABLE standard)
    list(TRANSFORM ARGN REPLACE "(.+)" "$<$<COMPILE_LANGUAGE:CXX>:<\\1$<ANGLE-R>>" OUTPUT_VARIABLE others)
    target_precompile_headers(${target} PRIVATE ${standard} ${others})
    # One out of a compiler cache may be older than the list of headers it is made from.
    target_compile_options(${target} PRIVATE "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endfunction()

# exportifc_precompile_delivered(TARGET HEADER...): the same for what is delivered. Not where GCC optimises it: all that
# those headers define costs it more than reading them (a small file 11 s instead of 5), and MinGW-w64's copying functions
# then set off false alarms.
function(exportifc_precompile_delivered target)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" OR NOT CMAKE_BUILD_TYPE MATCHES "^Rel")
    exportifc_precompile(${target} ${ARGN})
  endif()
endfunction()

# exportifc_precompiled_as(TARGET OTHER): those of OTHER, which has the same options.
function(exportifc_precompiled_as target other)
  if(EXPORTIFC_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${other})
  endif()
endfunction()
