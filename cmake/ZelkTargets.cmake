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

option(ZELK_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(zelk_options INTERFACE)
target_compile_options(zelk_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(WIN32)
  # Optimising for size, GCC 12 takes fright at the empty optionals that the native build understands.
  target_compile_options(zelk_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(ZELK_SANITIZE)
  # The library has no type information for the vptr check to look at.
  target_compile_options(zelk_options INTERFACE -fsanitize=address,undefined -fno-sanitize=vptr
                                                -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zelk_options INTERFACE -fsanitize=address,undefined)
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
  target_include_directories(${target} ${scope} ${root})
endfunction()

# The public header stands in api/ and may be included from everywhere: it declares the records that
# the backends fill and depends on nothing.
add_library(zelk_public_header INTERFACE)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/public)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/api/ZElkAPI.h ${CMAKE_BINARY_DIR}/include/public/ZElkAPI.h SYMBOLIC)
target_include_directories(zelk_public_header INTERFACE ${CMAKE_BINARY_DIR}/include/public)

# zelk_library(NAME SOURCES... LINKS targets...): a static library that belongs to the library itself. Its
# headers are those of the folder it is declared in.
function(zelk_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE zelk_core_options)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}
             OUTPUT_VARIABLE folder)
  zelk_folder(${name} PUBLIC ${folder})
endfunction()

# zelk_tests(NAME SOURCES... LINKS targets...): a GoogleTest program. Natively CTest runs its tests one by one;
# scripts/test-windows runs it whole.
function(zelk_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/com_environment.cpp)
  target_link_libraries(${name} PRIVATE ${arg_LINKS} zelk_platform zelk_options GTest::gmock_main)
  zelk_folder(${name} PRIVATE tests)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(WIN32)
    # Compiled fast and run once.
    target_compile_options(${name} PRIVATE -O0)
    target_precompile_headers(${name} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:<gmock/gmock.h$<ANGLE-R>>")
  else()
    gtest_discover_tests(${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
