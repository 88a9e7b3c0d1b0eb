# Compiler options and functions for all targets.
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
  # Required for ccache to cache files that use a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE}")
endif()

option(ELLWYND_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
# For development. A package built with a newer compiler must not fail because of new warnings.
option(ELLWYND_WERROR "Treat the compiler's warnings as errors" OFF)

add_library(ellwynd_options INTERFACE)
target_compile_options(ellwynd_options INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion
  -Wno-sign-conversion
  # Constructor parameters have the names of the members they fill, so GCC warns only about locals
  # that shadow locals or parameters. Clang's -Wshadow allows such constructors.
  $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>
  # Designated initializers may omit members, which have defaults.
  -Wno-missing-field-initializers
  $<$<BOOL:${ELLWYND_WERROR}>:-Werror>
  # Scores are compared with exact level limits, so fused multiply-add is off on all machines.
  -ffp-contract=off)
target_compile_definitions(ellwynd_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

find_program(LLD ld.lld)
if(LLD)
  target_link_options(ellwynd_options INTERFACE -fuse-ld=lld)
endif()

# What Debian's packages are hardened with. Not for the sanitizers, which check more, and not without
# optimisation, where the library's checks of buffer sizes have no effect.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  include(CheckCXXCompilerFlag)
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "ELLWYND_HAS${flag}" known)
    check_cxx_compiler_flag("${flag}" ${known})
    if(${known})
      target_compile_options(ellwynd_options INTERFACE "${flag}")
    endif()
  endforeach()
  target_compile_options(ellwynd_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  target_link_options(ellwynd_options INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()

if(ELLWYND_SANITIZE)
  # Without precompiled headers, a missing #include fails to compile.
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
  target_compile_options(ellwynd_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    # clang cannot emit the prologue of this check for coroutines.
    $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>
    # Instrumented code hides from GCC what is initialised; the plain build looks for this.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(ellwynd_options INTERFACE -fsanitize=address,undefined)
endif()

# ellwynd_allow_warning(FLAG FILES...): passes FLAG, such as -Wno-..., to GCC for the given files of
# the current folder, for a false positive.
function(ellwynd_allow_warning flag)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS "${flag}")
  endif()
endfunction()

# Qt's and the standard library's headers, which nearly every file needs, take half of its compile
# time. They are precompiled once for the modules below the windows, once for the windows and once
# for the tests.
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
# [PRIVATE_LINK targets...]): one module of the program. Include paths start at src/
# ("risk/scorer.h"), so that they name the module. PRIVATE_LINK is for targets that only the sources
# need, so that they are not visible to other modules.
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

# ellwynd_program(NAME SOURCES... LINK targets...): an executable that links modules.
function(ellwynd_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} ellwynd_options)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endfunction()
