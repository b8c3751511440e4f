# GoogleTest from the sources of Debian's package "googletest", built with the flags of each build:
# the packaged library would serve neither the Windows build nor the one with sanitizers.
#
# Gives GTest::gtest, GTest::gtest_main, GTest::gmock and GTest::gmock_main.

set(EXPORTIFC_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "Folder with the sources of GoogleTest")

if(NOT EXISTS "${EXPORTIFC_GOOGLETEST_DIR}/CMakeLists.txt")
  message(FATAL_ERROR
    "No GoogleTest in ${EXPORTIFC_GOOGLETEST_DIR}: run scripts/setup.sh test, or configure with "
    "-DEXPORTIFC_TESTS=OFF")
endif()

set(INSTALL_GTEST OFF CACHE INTERNAL "")
set(gtest_force_shared_crt ON CACHE INTERNAL "")  # MSVC: the run-time library of the other targets
add_subdirectory("${EXPORTIFC_GOOGLETEST_DIR}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

# exportifc_test_options: what is tested is optimised as it is delivered; of the tests themselves compiling
# takes longer than running.
add_library(exportifc_test_options INTERFACE)
target_link_libraries(exportifc_test_options INTERFACE exportifc_options)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT EXPORTIFC_SANITIZE)
  target_compile_options(exportifc_test_options INTERFACE
    # Checked copies need an optimiser.
    "$<$<CONFIG:Release,RelWithDebInfo>:SHELL:-O0 -U_FORTIFY_SOURCE>" $<$<CONFIG:RelWithDebInfo>:-g1>)
endif()
