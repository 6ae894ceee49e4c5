# Install rules, the CMake package VexoNames and the pkg-config file.

set(vexonames_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VexoNames)

install(TARGETS VexoFramework VexoNames EXPORT VexoNamesTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT VexoNamesTargets NAMESPACE VexoNames:: DESTINATION ${vexonames_package_dir})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/VexoNames/Public/ DESTINATION ${VEXONAMES_INSTALL_HEADERS}
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
configure_file(${PROJECT_SOURCE_DIR}/cmake/VexoNames.pc.in ${PROJECT_BINARY_DIR}/VexoNames.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/VexoNames.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
