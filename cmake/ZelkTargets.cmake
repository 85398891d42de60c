# How every target of this project is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Programs and libraries stand at the top of the build folder, where the README says they are.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
# They find each other wherever the build folder stands. A path that CMake means to replace when it installs ends in an
# empty element, which is the current directory; so none is replaced.
set(CMAKE_INSTALL_RPATH $ORIGIN)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# What nearly every file includes is compiled once. The native release build reads it anew in every file of the library and
# of the virtual cards, and so notices where an include is missing.
option(ZELK_PRECOMPILE_SYSTEM_HEADERS "Compile the headers that the library's files share once" ON)
set(ZELK_SYSTEM_HEADERS <platform/dshow.h> <algorithm> <array> <cstdint> <functional> <memory> <optional> <string>
                        <vector>)

set(ZELK_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler names them: address,undefined or thread")
option(ZELK_FUZZ "Build the programs that feed the parsers with anything (clang)" OFF)

# What everything is compiled with, the tests too.
add_library(zelk_common_options INTERFACE)
target_compile_options(zelk_common_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(WIN32)
  # Optimising for size, GCC 12 takes fright at the empty optionals that the native build understands.
  target_compile_options(zelk_common_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(ZELK_SANITIZE)
  # The library has no type information for the vptr check to look at.
  target_compile_options(zelk_common_options INTERFACE -fsanitize=${ZELK_SANITIZE} -fno-sanitize=vptr
                                                       -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zelk_common_options INTERFACE -fsanitize=${ZELK_SANITIZE})
endif()
if(ZELK_FUZZ)
  target_compile_options(zelk_common_options INTERFACE -fsanitize=fuzzer-no-link)
  target_compile_definitions(zelk_common_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# What people run. It is hardened as Debian's own packages are (dpkg-buildflags); position-independent programs are the
# compiler's default there. The Windows library has a size to keep.
add_library(zelk_options INTERFACE)
target_link_libraries(zelk_options INTERFACE zelk_common_options)
if(NOT WIN32)
  # Calls can be fortified only where the optimiser runs.
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(zelk_options INTERFACE -fstack-protector-strong -Wformat -Werror=format-security
                                                $<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
  target_link_options(zelk_options INTERFACE -Wl,-z,relro,-z,now)
endif()

# What goes into the library itself: no exceptions cross an export because there are none.
add_library(zelk_core_options INTERFACE)
target_link_libraries(zelk_core_options INTERFACE zelk_options)
target_compile_options(zelk_core_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti
                                                   -fno-threadsafe-statics>)

# zelk_folder(TARGET SCOPE PATHS...): lets TARGET, and in its scope those who link it, include the files
# below these paths by their full names ("backends/saa713x/boards.h"). Every target has an include folder
# of its own that holds links to these paths and to nothing else, so that including the header of
# a folder that is not linked does not compile.
function(zelk_folder target scope)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  foreach(path ${ARGN})
    cmake_path(GET path PARENT_PATH parent)
    file(MAKE_DIRECTORY ${root}/${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${path} ${root}/${path} SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} $<BUILD_INTERFACE:${root}>)
endfunction()

# zelk_header(TARGET HEADER): TARGET is a public header, included by its name alone as users do.
function(zelk_header target header)
  cmake_path(ABSOLUTE_PATH header OUTPUT_VARIABLE file)
  cmake_path(GET file FILENAME name)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  add_library(${target} INTERFACE)
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${file} ${root}/${name} SYMBOLIC)
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${root}>)
endfunction()

# This one may be included from everywhere: it declares the records that the backends fill and
# depends on nothing.
zelk_header(zelk_public_header api/ZElkAPI.h)

# zelk_exports(TARGET DEFINITION): the shared library exports the names of its definition file and
# nothing else.
function(zelk_exports target definition)
  cmake_path(ABSOLUTE_PATH definition)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${definition})
  if(WIN32)
    # A cdecl name carries an underscore in the object files; the definition file names the export
    # without.
    target_sources(${target} PRIVATE ${definition})
    return()
  endif()
  file(STRINGS ${definition} names REGEX "^  Z")
  list(TRANSFORM names STRIP)
  list(JOIN names ";\n    " names)
  set(map ${CMAKE_CURRENT_BINARY_DIR}/exports.map)
  file(CONFIGURE OUTPUT ${map} CONTENT "{\n  global:\n    @names@;\n  local:\n    *;\n};\n" @ONLY)
  target_link_options(${target} PRIVATE -Wl,--version-script=${map} -Wl,--no-undefined)
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
endfunction()

# zelk_library(NAME SOURCES... LINKS targets...): a static library that belongs to the library itself. Its
# headers are those of the folder it is declared in.
function(zelk_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE zelk_core_options)
  if(ZELK_PRECOMPILE_SYSTEM_HEADERS AND name STREQUAL zelk_common)
    target_precompile_headers(${name} PRIVATE ${ZELK_SYSTEM_HEADERS})
  elseif(ZELK_PRECOMPILE_SYSTEM_HEADERS)
    target_precompile_headers(${name} REUSE_FROM zelk_common)
  endif()
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}
             OUTPUT_VARIABLE folder)
  zelk_folder(${name} PUBLIC ${folder})
endfunction()

# zelk_tests(NAME SOURCES... LINKS targets...): a GoogleTest program. Natively CTest runs its tests one by one;
# scripts/test-windows runs it whole.
function(zelk_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} zelk_test_main zelk_platform zelk_test_options GTest::gmock_main)
  target_precompile_headers(${name} REUSE_FROM zelk_test_main)
  zelk_folder(${name} PRIVATE tests)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(NOT WIN32)
    gtest_discover_tests(${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
