# What CTest knows, found anew each time it starts, so that no list is kept by hand:
#
#   unit.*, library.*, module.*, reliability.*   each GoogleTest case of this build; labels unit, ...
#   cli.*     each case of tests/cli; label cli
#   stage.*   each stage of ./test.sh; labels stage, and quick or full
#
# Nothing runs while building: a cross build would need Wine for it. The stages build what they need
# by themselves, so only the native build without sanitizers lists them.

set(arguments "")
foreach(kind unit module reliability)
  list(APPEND arguments --gtest ${kind} "$<TARGET_FILE:${kind}_tests>")
endforeach()
if(EXPORTIFC_PROGRAM)
  list(APPEND arguments --gtest library "$<TARGET_FILE:library_tests>")
  list(APPEND arguments --program "$<TARGET_FILE:exportifc_program>")
endif()
if(NOT CMAKE_CROSSCOMPILING AND NOT EXPORTIFC_SANITIZE)
  list(APPEND arguments --stages)
endif()
list(JOIN arguments "]=] [=[" arguments)
set(found ${CMAKE_CURRENT_BINARY_DIR}/ctest_cases_found.cmake)
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/ctest_cases_run.cmake CONTENT "\
execute_process(COMMAND [=[${CMAKE_CURRENT_SOURCE_DIR}/ctest_cases.py]=] [=[${arguments}]=]
  OUTPUT_FILE [=[${found}]=] RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR \"tests/ctest_cases.py: \${failed}\")
endif()
include([=[${found}]=])
")
set_property(DIRECTORY APPEND PROPERTY
  TEST_INCLUDE_FILES ${CMAKE_CURRENT_BINARY_DIR}/ctest_cases_run.cmake)
