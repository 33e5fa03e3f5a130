# The page of "kvr view": built by node from viewer/, and made a part of the library by the assembler.
option(KVR_BUILD_VIEWER "Build the page of kvr view (needs node, and the packages that scripts/setup installs)" ON)
set(KVR_VIEWER_PAGE "" CACHE FILEPATH "A page of kvr view that was built before, for a build without node")

# kvr_add_viewer(TARGET): gives a library the page, unless it is not wanted.
function(kvr_add_viewer target)
  if(NOT KVR_BUILD_VIEWER)
    return()
  endif()
  set(page "${KVR_VIEWER_PAGE}")
  if(NOT page)
    find_program(KVR_NODE NAMES node nodejs)
    if(NOT KVR_NODE)
      message(FATAL_ERROR "The page of kvr view is built with node, which is not on the PATH: run scripts/setup, or set "
        "KVR_BUILD_VIEWER to OFF, or KVR_VIEWER_PAGE to a page that was built before.")
    endif()
    set(folder "${PROJECT_SOURCE_DIR}/viewer")
    if(NOT EXISTS "${folder}/node_modules/esbuild")
      message(FATAL_ERROR "The packages of viewer/ are not there: run scripts/setup, or set KVR_BUILD_VIEWER to OFF.")
    endif()
    set(page "${PROJECT_BINARY_DIR}/viewer/template.html")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/src/*")
    add_custom_command(OUTPUT "${page}"
      COMMAND "${KVR_NODE}" "${folder}/build.mjs" "${page}"
      DEPENDS ${sources} "${folder}/build.mjs" "${folder}/package-lock.json"
      COMMENT "Building the page of kvr view" VERBATIM)
  endif()
  set(KVR_VIEWER_PAGE "${page}")
  set(source "${PROJECT_BINARY_DIR}/viewer/ViewTemplate.cpp")
  configure_file("${PROJECT_SOURCE_DIR}/exchange/view/ViewTemplate.cpp.in" "${source}" @ONLY)
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${page}")
  target_sources(${target} PRIVATE "${source}")
  target_compile_definitions(${target} PRIVATE KVR_HAS_VIEWER)
endfunction()
