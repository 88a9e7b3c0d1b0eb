# What every target of the program is compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # What it must be told before it looks at files with a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE}")
endif()

option(ELLWYND_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
# For those who change the program. A package built with a newer compiler must not fail over a
# warning that nobody could have seen.
option(ELLWYND_WERROR "Treat the compiler's warnings as errors" OFF)

add_library(ellwynd_options INTERFACE)
target_compile_options(ellwynd_options INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion
  -Wno-sign-conversion
  # A constructor's parameters bear the names of the members that they fill, so only a local that
  # hides another local or a parameter is a mistake. Clang spares constructors by itself.
  $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>
  # Members have defaults, so leaving some out is meant.
  -Wno-missing-field-initializers
  $<$<BOOL:${ELLWYND_WERROR}>:-Werror>
  # Scores are compared with exact band limits, so no machine may fuse a multiplication and an
  # addition into one rounding.
  -ffp-contract=off)
target_compile_definitions(ellwynd_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

find_program(LLD ld.lld)
if(LLD)
  target_link_options(ellwynd_options INTERFACE -fuse-ld=lld)
endif()

if(ELLWYND_SANITIZE)
  # Without precompiled headers a file that does not name what it uses fails.
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
  target_compile_options(ellwynd_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(ellwynd_options INTERFACE -fsanitize=address,undefined)
endif()

# ellwynd_allow_warning(FLAG FILES...): switches a warning of GCC off in the current folder's files,
# where it is a false alarm.
function(ellwynd_allow_warning flag)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS "${flag}")
  endif()
endfunction()

# Half the time of compiling a file goes into the headers of Qt and the standard library that nearly
# every file needs. They are compiled once for the rooms below the windows, once for the windows and
# once for the tests.
set(ELLWYND_STANDARD_HEADERS
  <algorithm> <chrono> <filesystem> <functional> <map> <memory> <optional> <set> <string> <variant>
  <vector>)
file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/generated/precompiled.cpp" CONTENT "")
function(ellwynd_precompile name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  add_library(${name} OBJECT "${PROJECT_BINARY_DIR}/generated/precompiled.cpp")
  target_link_libraries(${name} PRIVATE ${ARG_LINK} ellwynd_options)
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# ellwynd_library(NAME [MOC] [PRECOMPILED target] SOURCES... [LINK targets...]
# [PRIVATE_LINK targets...]): one room of the program. Includes are written from src/ on
# ("risk/scorer.h"), so that a line says which room it reaches into. What only the sources need is
# linked privately, so that no room sees it through another.
function(ellwynd_library name)
  cmake_parse_arguments(ARG "MOC" "PRECOMPILED" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  if(ARG_MOC)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  if(ARG_PRECOMPILED)
    target_precompile_headers(${name} REUSE_FROM ${ARG_PRECOMPILED})
  endif()
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK} ellwynd_options)
endfunction()

# ellwynd_program(NAME SOURCES... LINK targets...): a thin executable over the rooms.
function(ellwynd_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} ellwynd_options)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endfunction()
