# exportifc_headers: libraries that are headers alone.

# The headers of CLI11 and nlohmann-json serve every target; their folder, /usr/include, does not:
# a cross build would find the system's own headers there.
set(EXPORTIFC_HEADER_PLACES /usr/include /usr/local/include CACHE STRING "Where they are looked for")
set(library_headers ${CMAKE_CURRENT_BINARY_DIR}/libraries)
foreach(header CLI/CLI.hpp nlohmann/json.hpp)
  get_filename_component(folder ${header} DIRECTORY)
  find_path(EXPORTIFC_${folder}_DIR ${header} NO_DEFAULT_PATH
    NO_CMAKE_FIND_ROOT_PATH PATHS ${EXPORTIFC_HEADER_PLACES} DOC "Folder with ${header}")
  if(NOT EXPORTIFC_${folder}_DIR)
    message(FATAL_ERROR "${header} is not installed: run scripts/setup.sh program, or configure "
      "with -DEXPORTIFC_PROGRAM=OFF")
  endif()
  file(MAKE_DIRECTORY ${library_headers})
  file(CREATE_LINK ${EXPORTIFC_${folder}_DIR}/${folder} ${library_headers}/${folder}
    COPY_ON_ERROR SYMBOLIC)
endforeach()
add_library(exportifc_headers INTERFACE)
target_include_directories(exportifc_headers SYSTEM INTERFACE ${library_headers})
