# WebAssembly by Debian's Emscripten, for the page.
set(EMSCRIPTEN_ROOT_PATH /usr/share/emscripten CACHE PATH "Where Emscripten lies")
set(emscripten_toolchain ${EMSCRIPTEN_ROOT_PATH}/cmake/Modules/Platform/Emscripten.cmake)
if(NOT EXISTS ${emscripten_toolchain})
  message(FATAL_ERROR "Emscripten is not installed: run scripts/setup.sh program")
endif()
include(${emscripten_toolchain})
