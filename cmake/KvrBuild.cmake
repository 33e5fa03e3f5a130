# What every target of the project shares: language level, warnings, visibility, sanitizers, output folders.
include(GNUInstallDirs)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

option(BUILD_SHARED_LIBS "Build the libraries as shared libraries" ON)

find_program(KVR_CCACHE ccache)
mark_as_advanced(KVR_CCACHE)
if(KVR_CCACHE)
  # Clones and work trees in other folders share what is cached: paths below the source folder count as relative ones.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      "${KVR_CCACHE}")
endif()

# GCC 12 takes the joining of two texts for a copy onto itself (GCC bug 105651).
add_library(kvr_flags INTERFACE)
target_compile_options(kvr_flags INTERFACE
  -Wall -Wextra -Wpedantic -Werror $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow> $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -Wnon-virtual-dtor -Wcast-qual -Wformat=2)
if(KVR_SANITIZE)
  # With its own checks in between, GCC takes optionals for uninitialised; the release build warns of those that are.
  target_compile_options(kvr_flags INTERFACE
    -fsanitize=${KVR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(kvr_flags INTERFACE -fsanitize=${KVR_SANITIZE})
endif()
if(KVR_COVERAGE)
  target_link_options(kvr_flags INTERFACE --coverage)
endif()

# kvr_add_library(NAME ALIAS): a library of the .cpp files in the given source folders. In-tree includes are written
# from the project's root; installed headers keep their path under include/kvr.
function(kvr_add_library name alias)
  set(sources)
  foreach(folder IN LISTS ARGN)
    file(GLOB found CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    list(APPEND sources ${found})
  endforeach()
  add_library(${name} ${sources})
  add_library(kvr::${alias} ALIAS ${name})
  set_target_properties(${name} PROPERTIES
    EXPORT_NAME ${alias} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN")
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kvr>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:kvr_flags>)
  if(name IN_LIST KVR_COVERAGE)
    # Not optimised, so that each line has a count of its own. What is not counted is built as ever.
    target_compile_options(${name} PRIVATE --coverage -O0)
  endif()
  string(TOUPPER ${name} upper)
  target_compile_definitions(${name} PRIVATE ${upper}_BUILDING)
endfunction()
