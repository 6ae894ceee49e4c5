# Headers made here, so that nobody keeps them up to date by hand: the version, VexoFramework.h with all of the
# framework's headers, VexoNames.h with all of the library's.

set(VEXONAMES_GENERATED_HEADERS ${PROJECT_BINARY_DIR}/include)
configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.h.in ${VEXONAMES_GENERATED_HEADERS}/VexoNamesVersion.h @ONLY)

# vexonames_header_of_all(<header> <what it has all of> <names as they are included...>)
function(vexonames_header_of_all header all_of)
  list(TRANSFORM ARGN PREPEND "#include \"")
  list(TRANSFORM ARGN APPEND "\"")
  list(JOIN ARGN "\n" all_includes)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/AllHeaders.h.in ${VEXONAMES_GENERATED_HEADERS}/${header} @ONLY)
endfunction()

set(framework ${PROJECT_SOURCE_DIR}/Framework)
set(framework_headers "")
foreach(folder IN ITEMS Base Middleware)  # included by their bare names
  file(GLOB found RELATIVE ${framework}/${folder} CONFIGURE_DEPENDS ${framework}/${folder}/*.h)
  list(APPEND framework_headers ${found})
endforeach()
file(GLOB_RECURSE found RELATIVE ${framework} CONFIGURE_DEPENDS
  ${framework}/CFS/*.h ${framework}/Services/*.h ${framework}/Ticket/*.h)
vexonames_header_of_all(VexoFramework.h "the library VexoFramework" VexoNamesVersion.h ${framework_headers} ${found})

file(GLOB found RELATIVE ${PROJECT_SOURCE_DIR}/VexoNames/Public CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/VexoNames/Public/*.h)
vexonames_header_of_all(VexoNames.h "the library VexoNames" VexoNamesVersion.h ${found})
