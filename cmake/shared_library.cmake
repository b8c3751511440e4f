# libexportifc.so and exportifc-1.dll: include/exportifc/library.h for programs in other languages, with
# what CMake and pkg-config need to find them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The number of the binary interface stands in the header alone.
file(STRINGS ${CMAKE_SOURCE_DIR}/include/exportifc/library.h abi_line REGEX "^#define EXPORTIFC_LIBRARY_ABI ")
string(REGEX MATCH "[0-9]+$" abi "${abi_line}")

# exportifc_link_shared(TARGET): links it, and says what it shows.
function(exportifc_link_shared target)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME exportifc EXPORT_NAME exportifc
    VERSION ${abi}.${PROJECT_VERSION} SOVERSION ${abi})
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:include>)
  target_link_libraries(${target} PRIVATE
    exportifc_library exportifc_expat exportifc_zlib exportifc_options)
  if(WIN32)
    # The names of the module and of the program differ from it in the case of their letters or not at all.
    set_target_properties(${target} PROPERTIES PREFIX "" RUNTIME_OUTPUT_NAME exportifc-${abi})
    target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/library/exportifc.def)
  else()
    target_link_options(${target} PRIVATE
      "SHELL:-Xlinker \"--version-script=${CMAKE_SOURCE_DIR}/library/exportifc.map\"")
    set_target_properties(${target} PROPERTIES
      LINK_DEPENDS ${CMAKE_SOURCE_DIR}/library/exportifc.map)
  endif()
endfunction()

add_library(exportifc_shared SHARED $<TARGET_OBJECTS:exportifc_api>)
exportifc_link_shared(exportifc_shared)

install(TARGETS exportifc_shared EXPORT exportifc COMPONENT library
  RUNTIME DESTINATION bin LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/exportifc/library.h DESTINATION include/exportifc COMPONENT library)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/exportifc)
install(EXPORT exportifc NAMESPACE exportifc:: FILE exportifcConfig.cmake
  DESTINATION ${package_folder} COMPONENT library)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/packaging/exportifcConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
# Relative: the folder may be moved.
file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(packaging/exportifc.pc ${CMAKE_BINARY_DIR}/packaging/exportifc.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/exportifcConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT library)
install(FILES ${CMAKE_BINARY_DIR}/packaging/exportifc.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT library)
