# Install rules, the CMake package VexoNames and the pkg-config file.

set(vexonames_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VexoNames)

set(vexonames_libraries VexoFramework VexoNames)
if(TARGET VexoMiddlewareGrpc)
  list(APPEND vexonames_libraries VexoMiddlewareGrpc)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/Framework/MiddlewareGrpc DESTINATION ${VEXONAMES_INSTALL_HEADERS}/Framework
          FILES_MATCHING PATTERN "*.h" PATTERN Private EXCLUDE)
endif()
install(TARGETS ${vexonames_libraries} EXPORT VexoNamesTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT VexoNamesTargets NAMESPACE VexoNames:: DESTINATION ${vexonames_package_dir})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/VexoNames/Public/ ${VEXONAMES_GENERATED_HEADERS}/ DESTINATION ${VEXONAMES_INSTALL_HEADERS}
        FILES_MATCHING PATTERN "*.h")
foreach(folder IN LISTS VEXO_FRAMEWORK_FOLDERS)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/Framework/${folder}
          DESTINATION ${VEXONAMES_INSTALL_HEADERS}/Framework FILES_MATCHING PATTERN "*.h")
endforeach()

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/VexoNamesConfig.cmake.in ${PROJECT_BINARY_DIR}/VexoNamesConfig.cmake
  INSTALL_DESTINATION ${vexonames_package_dir})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/VexoNamesConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VexoNamesConfig.cmake ${PROJECT_BINARY_DIR}/VexoNamesConfigVersion.cmake
        DESTINATION ${vexonames_package_dir})

# Absolute folders (a packager may set them) stay; relative ones follow the file, so that the tree can be moved.
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
  set(pc_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(pc_${dir} "${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  string(REGEX REPLACE "[^/]+" ".." to_prefix "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  set(pc_prefix "\${pcfiledir}/${to_prefix}")
endif()
set(pc_cflags "-I\${includedir}/VexoNames")
foreach(folder IN LISTS VEXO_FRAMEWORK_INCLUDE_FOLDERS)
  string(APPEND pc_cflags " -I\${includedir}/VexoNames/${folder}")
endforeach()
set(pc_files VexoNames.pc)
if(TARGET VexoMiddlewareGrpc)
  list(APPEND pc_files VexoMiddlewareGrpc.pc)
endif()
foreach(file IN LISTS pc_files)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${file}.in ${PROJECT_BINARY_DIR}/${file} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
