# The libraries that are headers, by their folders alone: Debian's own description of them would put all of Linux's
# headers before Darwin's.

get_filename_component(tools "${CMAKE_CURRENT_LIST_DIR}/../../../build/darwin-tools" ABSOLUTE)
set(CIRROVANE_FMT_HEADERS /usr/include/fmt CACHE PATH "The folder of format.h")
set(CIRROVANE_CLI11_HEADERS /usr/include/CLI CACHE PATH "The folder of CLI.hpp")
set(CIRROVANE_JSON_HEADERS "${tools}/node_modules/llama.rn/cpp/nlohmann" CACHE PATH "The folder of json.hpp")

set(links "${CMAKE_BINARY_DIR}/headers")
file(MAKE_DIRECTORY "${links}")
file(CREATE_LINK "${CIRROVANE_FMT_HEADERS}" "${links}/fmt" SYMBOLIC)
file(CREATE_LINK "${CIRROVANE_CLI11_HEADERS}" "${links}/CLI" SYMBOLIC)
file(CREATE_LINK "${CIRROVANE_JSON_HEADERS}" "${links}/nlohmann" SYMBOLIC)
file(CREATE_LINK /usr/include/gtest "${links}/gtest" SYMBOLIC)
file(CREATE_LINK /usr/include/gmock "${links}/gmock" SYMBOLIC)
# Qt's own headers of its graphics ask for OpenGL's.
set(opengl "${CMAKE_BINARY_DIR}/opengl")
file(MAKE_DIRECTORY "${opengl}")
file(CREATE_LINK /usr/include/GL "${opengl}/GL" SYMBOLIC)
file(CREATE_LINK /usr/include/KHR "${opengl}/KHR" SYMBOLIC)
file(CREATE_LINK "${CMAKE_CURRENT_LIST_DIR}/include/OpenGL" "${opengl}/OpenGL" SYMBOLIC)
include_directories(SYSTEM "${opengl}")
foreach(target fmt::fmt-header-only nlohmann_json::nlohmann_json CLI11::CLI11 GTest::gmock GTest::gtest_main)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  # Our own folder first: it holds back what a current library no longer gives by that header.
  target_include_directories(${target} INTERFACE "${CMAKE_CURRENT_LIST_DIR}/include" "${links}")
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)

list(PREPEND CMAKE_MODULE_PATH "${CMAKE_BINARY_DIR}/packages")
foreach(package fmt nlohmann_json CLI11 GTest)
  file(WRITE "${CMAKE_BINARY_DIR}/packages/Find${package}.cmake" "set(${package}_FOUND ON)\n")
endforeach()
# A test program is asked for its cases when it runs, which it cannot here.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
