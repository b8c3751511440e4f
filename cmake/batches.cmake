# Several files of a target compiled as one: the headers of the standard library and of others, which take most of the
# time, are then read once a batch (the program in half the time, the tests in two thirds).
#
# Off where each file is looked at by itself.

option(EXPORTIFC_BATCHES "Compile files of the library, the program and the tests in batches" ON)

# exportifc_compile_in_batches(TARGET): its files, but those with SKIP_UNITY_BUILD_INCLUSION. What two files name alike
# in namespaces without a name must differ, or be in one of those.
function(exportifc_compile_in_batches target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${EXPORTIFC_BATCHES} UNITY_BUILD_BATCH_SIZE 8)
endfunction()
