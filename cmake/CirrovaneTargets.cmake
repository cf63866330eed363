# How every library and program of the tree is built: one place for the language level, the warnings and the
# sanitizers, so that no folder can fall behind.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(CIRROVANE_CCACHE ccache)
if(CIRROVANE_CCACHE)
  # What one build folder compiled serves the others: the folder's own path is left out of the key. Without the
  # sloppiness nothing would be kept that uses precompiled headers; what it passes over does not occur here.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_NOHASHDIR=1 "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}"
      CCACHE_SLOPPINESS=pch_defines,time_macros "${CIRROVANE_CCACHE}")
endif()

# What our own sources are held to. Sources that a tool generates get the rest of the options alone.
add_library(cirrovane_warnings INTERFACE)
target_compile_options(cirrovane_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Wcast-align -Wundef)
if(NOT APPLE)
  # Apple's compiler finds more with each release; what it newly finds must not keep anybody from building.
  target_compile_options(cirrovane_warnings INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(cirrovane_warnings INTERFACE -Wduplicated-cond -Wlogical-op -Wuseless-cast)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlaps that are not there in std::string's own concatenation (its bug 105651).
    target_compile_options(cirrovane_warnings INTERFACE -Wno-restrict)
  endif()
endif()

add_library(cirrovane_instrumentation INTERFACE)
if(CIRROVANE_SANITIZE)
  target_compile_options(cirrovane_instrumentation INTERFACE
    -fsanitize=${CIRROVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CIRROVANE_SANITIZE MATCHES "undefined")
    # The check of a class's identity opens a pipe; it cries out where a test has used up all descriptors.
    target_compile_options(cirrovane_instrumentation INTERFACE -fno-sanitize=vptr)
  endif()
  target_link_options(cirrovane_instrumentation INTERFACE -fsanitize=${CIRROVANE_SANITIZE})
endif()
if(CIRROVANE_FUZZ)
  # Coverage in the libraries is what steers libFuzzer; only the targets themselves link its main().
  target_compile_options(cirrovane_instrumentation INTERFACE -fsanitize=fuzzer-no-link)
endif()

# What ships is hardened as Debian hardens its own programs.
set(ships "$<AND:$<CONFIG:Release>,$<PLATFORM_ID:Linux>>")
target_compile_options(cirrovane_instrumentation INTERFACE
  "$<${ships}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
target_link_options(cirrovane_instrumentation INTERFACE "$<${ships}:LINKER:-z,relro,-z,now>")

add_library(cirrovane_build_options INTERFACE)
target_link_libraries(cirrovane_build_options INTERFACE cirrovane_warnings cirrovane_instrumentation)

# cirrovane_library(NAME SOURCES... [NEEDS libraries...]): the library cirrovane::NAME of one folder. A folder includes
# only what it NEEDS. A program without the layers above does not link what a library uses of them; scripts/check-layers
# finds what a linker does not, a header alone among it.
function(cirrovane_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;NEEDS;USES")
  set(target cirrovane_${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(cirrovane::${name} ALIAS ${target})
  target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target} PUBLIC ${arg_NEEDS} PRIVATE ${arg_USES} cirrovane_build_options)
endfunction()

# cirrovane_precompile(TARGET HEADERS...): compiles the headers once for all sources of the target. A source includes
# what it uses all the same: clang-tidy, and the release, compile it without.
function(cirrovane_precompile target)
  if(NOT CMAKE_UNITY_BUILD)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    # So that ccache sees which precompiled headers a source used.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
      $<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      # Through precompiled headers GCC 12 also reports the library's own overlaps that are not there. The release, which
      # uses none, looks for real ones.
      target_compile_options(${target} PRIVATE -Wno-array-bounds)
    endif()
  endif()
endfunction()

# cirrovane_joined_sources(RESULT SOURCES...): sources that each include some of the given ones, as CMake's unity build
# makes them.
function(cirrovane_joined_sources result)
  set(joined "")
  set(text "")
  set(count 0)
  foreach(source IN LISTS ARGN)
    get_filename_component(path "${source}" ABSOLUTE)
    string(APPEND text "#include \"${path}\"\n")
    math(EXPR count "${count} + 1")
    math(EXPR place "${count} % ${CMAKE_UNITY_BUILD_BATCH_SIZE}")
    list(LENGTH ARGN total)
    if(place EQUAL 0 OR count EQUAL total)
      set(file "${CMAKE_CURRENT_BINARY_DIR}/joined_${count}.cpp")
      file(CONFIGURE OUTPUT "${file}" CONTENT "${text}" @ONLY)
      list(APPEND joined "${file}")
      set(text "")
    endif()
  endforeach()
  set(${result} "${joined}" PARENT_SCOPE)
endfunction()

# cirrovane_program(NAME SOURCES... [USES libraries...]): one executable under the build folder's bin/.
function(cirrovane_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${arg_USES} cirrovane_build_options)
endfunction()

# cirrovane_test(NAME SOURCES... [USES libraries...] [LABEL unit|cli|...] [NEEDS_PROGRAMS programs...]): one GoogleTest
# program, each of its tests known to CTest by its own name. Programs that it runs are found by the macros
# CIRROVANE_BIN_DIR, and a folder that it may fill by CIRROVANE_TEST_DIR: below the build folder, where files can have
# extended attributes, which the system's temporary folder may not offer.
function(cirrovane_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL" "SOURCES;USES;NEEDS_PROGRAMS")
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  cirrovane_program(${name} SOURCES ${arg_SOURCES} USES ${arg_USES} cirrovane_test_support cirrovane_no_system_bus GTest::gmock GTest::gtest_main)
  # What is measured and shipped is optimised; a test is compiled more often than it is run.
  target_compile_options(${name} PRIVATE -O0)
  # Most of its time goes to templates that the tests beside it need too.
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 5)
  target_compile_definitions(${name} PRIVATE
    CIRROVANE_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    CIRROVANE_TEST_DIR="${PROJECT_BINARY_DIR}/test-files"
    CIRROVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(arg_LABEL MATCHES "^(unit|cli)$")
    add_dependencies(unit_and_cli_programs ${name})
  endif()
  if(arg_NEEDS_PROGRAMS)
    add_dependencies(${name} ${arg_NEEDS_PROGRAMS})
  endif()
  if(CIRROVANE_SANITIZE)
    # A sanitizer makes starting a process dear, so there each program runs all of its tests in one.
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 1200)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 300)
  endif()
endfunction()
