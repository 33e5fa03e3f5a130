# Libraries, the program kvr, headers under include/kvr, a CMake package and a pkg-config file. Everything that is
# installed finds its neighbours from its own place, so the prefix may be moved.
include(CMakePackageConfigHelpers)

set(KVR_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/${PROJECT_NAME}")
set(KVR_PKGCONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS kvr_api kvr_kernel kvr_gmk_interface kvr_xml_util kvr_xml_producer kvr_authoring kvr_scene kvr_inspect kvr_exchange
  EXPORT ${PROJECT_NAME}
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
if(TARGET kvr)
  install(TARGETS kvr RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  # Where kvr looks for it: beside the folder of programs.
  install(TARGETS kvr_whole RUNTIME DESTINATION libexec/kvr)
  install(FILES docs/kvr.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()

foreach(folder framework/api framework/kernel framework/gmk_interface framework/xml_util authoring scene)
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
  install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/${folder}")
endforeach()
install(FILES producer/Export.h producer/XMLProducer.h producer/XMLProducerOptions.h
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/producer")

file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/exchange/*.h")
install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/exchange")
install(FILES inspect/Check.h inspect/Compare.h inspect/Digest.h inspect/Explain.h inspect/Export.h inspect/Finding.h
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/inspect")
install(FILES exchange/source/SceneOptions.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/exchange/source")

install(EXPORT ${PROJECT_NAME} NAMESPACE kvr:: FILE ${PROJECT_NAME}Targets.cmake DESTINATION "${KVR_PACKAGE_DIR}")
configure_package_config_file(cmake/${PROJECT_NAME}Config.cmake.in ${PROJECT_NAME}Config.cmake
  INSTALL_DESTINATION "${KVR_PACKAGE_DIR}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_NAME}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}Config.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}ConfigVersion.cmake"
  cmake/KvrOpenCascade.cmake
  DESTINATION "${KVR_PACKAGE_DIR}")

# The way back from the pkg-config file to the prefix; an absolute library folder has none.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(KVR_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH KVR_PC_PREFIX "/${KVR_PKGCONFIG_DIR}" "/")
  string(REGEX REPLACE "/$" "" KVR_PC_PREFIX "\${pcfiledir}/${KVR_PC_PREFIX}")
endif()
foreach(folder LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
    set(KVR_PC_${folder} "${CMAKE_INSTALL_${folder}}")
  else()
    set(KVR_PC_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
  endif()
endforeach()
# A shared library brings its own dependencies along; only their headers are needed.
if(BUILD_SHARED_LIBS)
  set(KVR_PC_REQUIRES "Requires.private")
  set(KVR_PC_LIBS "-lkvr_xml_producer -lkvr_api")
else()
  set(KVR_PC_REQUIRES "Requires")
  set(KVR_PC_LIBS "-lkvr_xml_producer -lkvr_xml_util -lkvr_gmk_interface -lkvr_kernel -lkvr_api -lboost_filesystem")
  string(APPEND KVR_PC_LIBS " -lTKMesh -lTKTopAlgo -lTKBRep -lTKGeomBase -lTKG3d -lTKG2d -lTKMath -lTKernel -lxxhash")
endif()
configure_file(cmake/${PROJECT_NAME}.pc.in ${PROJECT_NAME}.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}.pc" DESTINATION "${KVR_PKGCONFIG_DIR}")
