# What the cross build takes from the machine that it runs on: libraries that are headers alone, and the sources of
# GoogleTest. The machine's own include folder, with headers for another system, stays out of sight.

# find_package(PACKAGE) finds the targets that were declared here.
function(zelk_provide package)
  file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${package}Config.cmake "")
endfunction()

# zelk_headers(PACKAGE TARGET FOLDER): a library whose headers stand in FOLDER of the machine's include folder.
function(zelk_headers package target folder)
  set(root ${CMAKE_BINARY_DIR}/include/headers)
  file(MAKE_DIRECTORY ${root})
  find_path(ZELK_${folder}_ROOT ${folder} PATHS /usr/local/include /usr/include NO_DEFAULT_PATH
            NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(CREATE_LINK ${ZELK_${folder}_ROOT}/${folder} ${root}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${root})
  zelk_provide(${package})
endfunction()

zelk_headers(CLI11 CLI11::CLI11 CLI)
zelk_headers(nlohmann_json nlohmann_json::nlohmann_json nlohmann)

set(ZELK_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest")
set(BUILD_GMOCK ON)
set(INSTALL_GTEST OFF)
add_subdirectory(${ZELK_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
target_include_directories(gtest BEFORE PUBLIC ${PROJECT_SOURCE_DIR}/tests/support/googletest)
zelk_provide(GTest)
