# exportifc_options: what every target of this project is compiled and linked with.
#
#   target_link_libraries(my_target PRIVATE exportifc_options)
#
# Libraries of others (GoogleTest) do not link it, so that they keep their own warnings.

option(EXPORTIFC_WARNINGS_AS_ERRORS "Stop at the first compiler warning" OFF)
option(EXPORTIFC_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(EXPORTIFC_COVERAGE "Count which lines are reached (Clang)" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)

# The static libraries end up in a shared one, which shows nothing but its three entry points.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(exportifc_options INTERFACE)

if(MSVC)
  target_compile_options(exportifc_options INTERFACE
    /W4 /permissive- /utf-8 /EHsc
    /Zc:__cplusplus
    /fp:precise  # the default, named because the last digits of the output depend on it
    $<$<BOOL:${EXPORTIFC_WARNINGS_AS_ERRORS}>:/WX>)
  target_compile_definitions(exportifc_options INTERFACE _CRT_SECURE_NO_WARNINGS)
  target_link_options(exportifc_options INTERFACE
    /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA $<$<NOT:$<CONFIG:Debug>>:/Brepro>)
else()
  target_compile_options(exportifc_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion
    $<$<BOOL:${EXPORTIFC_WARNINGS_AS_ERRORS}>:-Werror>
    # No fused multiply-add: the same 32-bit and 64-bit steps on every machine.
    -ffp-contract=off)
endif()

# Overwritten return addresses and overlong copies end the program instead of going on. Costs about
# one instruction in a hundred. The sanitizers do it in another way, and an unoptimised build
# has no checked copies.
if(NOT MSVC AND NOT EXPORTIFC_SANITIZE AND NOT EMSCRIPTEN)
  add_compile_options(-fstack-protector-strong
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  add_link_options(-fstack-protector-strong)  # mingw-w64: its run-time library, linked statically
  if(UNIX)
    add_link_options(-Wl,-z,relro -Wl,-z,now)
    # Packages have no debugging symbols, but the number of a build would still be taken from them, and
    # with it from the folders in them.
    add_link_options(-Wl,--build-id=none)
  endif()
endif()

if(EXPORTIFC_SANITIZE)
  # For all targets: a library of others without them would hide its errors, and the containers of
  # the standard library must agree in both.
  set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang|GNU")
    list(APPEND sanitize -fsanitize=float-cast-overflow)  # not part of "undefined"
  endif()
  add_compile_options(${sanitize})
  if(EXPORTIFC_FUZZ)
    add_compile_options(-O1)
  else()
    # The tests take seconds, optimised or not; compiling takes half as long. Reports name lines only.
    add_compile_options(-O0 -g1)
  endif()
  add_link_options(${sanitize})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(EXPORTIFC_COVERAGE)
  # Counts that scripts/coverage.sh did not ask for go to the build folder, whose name also keeps objects apart in a
  # compiler cache: they name their sources by whole paths.
  set(count -fprofile-instr-generate=${CMAKE_BINARY_DIR}/counts/%m.profraw -fcoverage-mapping)
  add_compile_options(${count})
  add_link_options(${count})
endif()

if(EMSCRIPTEN)
  # The exceptions of WebAssembly itself: those that scripts imitate cost a call out of it each.
  add_compile_options(-fwasm-exceptions)
  add_link_options(-fwasm-exceptions)
  set(CMAKE_POSITION_INDEPENDENT_CODE OFF)
endif()

if(MINGW)
  # No DLL of the compiler beside ours, and the protections that the linker can give.
  add_link_options(-static
    -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va
    $<$<CONFIG:Release>:-s>)
  # Two builds of one commit are identical: no date, no folder names in the binaries.
  add_link_options(-Wl,--no-insert-timestamp)
  # Optimised as the Linux build is.
  set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
  set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(
    "-ffile-prefix-map=${CMAKE_BINARY_DIR}=build"
    "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
endif()
