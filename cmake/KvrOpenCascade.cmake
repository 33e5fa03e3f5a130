# The parts of Open CASCADE that are used, each as a target occt::NAME. Its own CMake package names every toolkit, with
# what those of graphics need; this one asks for no more than is linked.
find_path(KVR_OCCT_INCLUDE_DIR TopoDS_Shape.hxx PATH_SUFFIXES opencascade oce REQUIRED)
mark_as_advanced(KVR_OCCT_INCLUDE_DIR)

function(kvr_find_occt)
  foreach(name IN LISTS ARGN)
    if(TARGET occt::${name})
      continue()
    endif()
    find_library(KVR_OCCT_${name} ${name} REQUIRED)
    mark_as_advanced(KVR_OCCT_${name})
    add_library(occt::${name} UNKNOWN IMPORTED GLOBAL)
    set_target_properties(occt::${name} PROPERTIES
      IMPORTED_LOCATION "${KVR_OCCT_${name}}"
      INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${KVR_OCCT_INCLUDE_DIR}"
      INTERFACE_INCLUDE_DIRECTORIES "${KVR_OCCT_INCLUDE_DIR}")
  endforeach()
endfunction()
