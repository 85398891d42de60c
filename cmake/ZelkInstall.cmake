# What a user gets: cmake --install and the packages that CPack makes of the same.
#
#   bin/       zelk, on Windows the DLLs too        include/                   the C headers
#   lib/       libraries, import libraries          lib/cmake, lib/pkgconfig   for a user's build
#   share/zelkapi    what is on the air             share/doc/zelkapi, share/man

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(ZELK_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/zelkapi)

# Packaging takes what has been built and builds nothing: the tests are not part of it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

# --- Libraries and program; the virtual cards and zelk are not part of every build ---
set(libraries)
foreach(target zelkapi zelkvirtual zelk_platform)
  if(NOT TARGET ${target})
    continue()
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    list(APPEND libraries ${target})
  endif()
endforeach()
if(NOT WIN32)
  # Found beside each other and from bin/ wherever the package is unpacked.
  set_target_properties(${libraries} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endif()
set_target_properties(zelk_public_header PROPERTIES EXPORT_NAME header)
set(headers zelk_public_header)
set(header_files ${PROJECT_SOURCE_DIR}/api/ZElkAPI.h)
if(TARGET zelkvirtual)
  set_target_properties(zelk_virtual_header PROPERTIES EXPORT_NAME virtual_header)
  list(APPEND headers zelk_virtual_header)
  list(APPEND header_files ${PROJECT_SOURCE_DIR}/virtual_cards/c_api/ZElkVirtual.h)
endif()
if(zelk_platform IN_LIST libraries)
  set_target_properties(zelk_platform PROPERTIES EXPORT_NAME zelkhost)
endif()
install(TARGETS ${libraries} ${headers} EXPORT ZElkAPITargets
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${header_files} TYPE INCLUDE)
if(TARGET zelk)
  install(TARGETS zelk)
  if(NOT WIN32)
    # Built, it stands beside its libraries; installed, it does not.
    set(installed $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
    set_target_properties(zelk PROPERTIES INSTALL_RPATH "$ORIGIN;${installed}")
    install(CODE "file(RPATH_CHANGE OLD_RPATH [[$ORIGIN:${installed}]] NEW_RPATH [[${installed}]]
      FILE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/zelk\")")
  endif()
endif()
if(TARGET zelk_virtual_cards)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/virtual_cards/data/
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zelkapi)
endif()

# --- For a user's build ---
set(config ${CMAKE_INSTALL_LIBDIR}/cmake/ZElkAPI)
install(EXPORT ZElkAPITargets NAMESPACE ZElkAPI:: DESTINATION ${config})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZElkAPIConfig.cmake.in ZElkAPIConfig.cmake
  INSTALL_DESTINATION ${config} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ZElkAPIConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZElkAPIConfig.cmake
  ${PROJECT_BINARY_DIR}/ZElkAPIConfigVersion.cmake DESTINATION ${config})

if(WIN32)
  # The I/O libraries of virtual cards, where no search for a real card's comes by.
  install(FILES $<TARGET_FILE:PioGate> $<TARGET_FILE:PioGate880>
    DESTINATION ${CMAKE_INSTALL_BINDIR}/virtual-io)
  # The linker of Visual C++ takes the .lib, or one that its own tools make of the .def.
  foreach(definition api/ZElkAPI virtual_cards/c_api/ZElkVirtual)
    cmake_path(GET definition FILENAME name)
    string(TOLOWER ${name} target)
    if(NOT TARGET ${target})
      continue()
    endif()
    set(source ${PROJECT_SOURCE_DIR}/${definition}.def)
    set(library ${PROJECT_BINARY_DIR}/lib/${name}.lib)
    add_custom_command(OUTPUT ${library} DEPENDS ${source}
      COMMAND ${CMAKE_DLLTOOL} --input-def ${source} --output-lib ${library} VERBATIM)
    add_custom_target(${target}_lib ALL DEPENDS ${library})
    install(FILES ${source} ${library} DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endforeach()
else()
  # The files say where they are relative to themselves, so that the package can be unpacked anywhere.
  file(RELATIVE_PATH ZELK_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" ZELK_PREFIX ${ZELK_PREFIX})
  foreach(name zelkapi zelkvirtual)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  endforeach()
  install(FILES ${PROJECT_SOURCE_DIR}/docs/zelk.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# --- Documentation, with its links as they are in the source tree ---
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${ZELK_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION ${ZELK_DOCDIR}
  PATTERN zelk.1 EXCLUDE PATTERN Doxyfile EXCLUDE PATTERN __pycache__ EXCLUDE)
# The reference, where scripts/docs has made it.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html/ DESTINATION ${ZELK_DOCDIR}/reference
  OPTIONAL)

# --- Packages ---
set(CPACK_PACKAGE_NAME zelkapi)
set(CPACK_PACKAGE_VENDOR ZElkAPI)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "TV and FM tuning, scanning and control of four families of
analogue TV-tuner cards. With it come virtual cards made of chip models, to write and test TV
applications without the hardware, and zelk, a command-line program.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ZElkAPI-${PROJECT_VERSION}-windows-x86)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME zelkapi-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "ZElkAPI <zelkapi@localhost>")
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # Our libraries need each other; no other package brings them.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
endif()
include(CPack)
