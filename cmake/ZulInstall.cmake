# `cmake --install`: libraries, headers, a package for find_package(zulgraphics) and one for pkg-config; with the
# program, its manual page and the maps to try it with.
include(CMakePackageConfigHelpers)

set(zul_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/zulgraphics")
set(zul_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zulgraphics")

set(zul_libraries zulplatform zulkernel zulgraphics)
if(ZUL_STORE)
  list(APPEND zul_libraries zulstore)
endif()

# Found in place and after the tree is moved: each library looks beside itself first.
if(NOT WIN32)
  set_target_properties(${zul_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
  set(zul_platform_libs "-lzulplatform")
else()
  set(zul_platform_libs "-lgdi32 -lmsimg32 -luser32")
endif()

install(TARGETS ${zul_libraries} EXPORT zulgraphicsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT libraries)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
install(EXPORT zulgraphicsTargets NAMESPACE zulgraphics:: DESTINATION ${zul_package_dir})
# Headers of the rooms' insides: no installed header includes them, and no application needs them.
set(zul_inner_headers
  canvas/corners.h canvas/device_points.h
  kernel/class_documents.h kernel/modification_state.h kernel/object_table.h
  raster/bmp_file.h raster/packed_dib.h raster/pattern_bitmap.h
  scaler/mapping_avx512.h scaler/mapping_kernels.h scaler/mapping_vectors.h scaler/projective_kernels.h
  scaler/single_precision.h scaler/usable_count.h
  store/database.h store/store_format.h store/store_session.h store/store_step.h store/store_streams.h
  tools/device_guards.h tools/formats.h tools/line_walk.h tools/pen_marks.h tools/pen_styles.h tools/settings.h)
list(TRANSFORM zul_inner_headers PREPEND "zul/")
file(GLOB_RECURSE zul_public_headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS "zul/*.h")
list(REMOVE_ITEM zul_public_headers ${zul_inner_headers})
if(NOT ZUL_STORE)
  list(FILTER zul_public_headers EXCLUDE REGEX "^zul/store/")
endif()
list(APPEND zul_public_headers platform/crt.h platform/export.h platform/gdi.h)
if(NOT WIN32)
  # What a host may settle about the software device.
  list(APPEND zul_public_headers
    platform/software/display.h platform/software/images.h platform/software/resources.h)
endif()
foreach(header ${zul_public_headers})
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${zul_include_dir}/${folder})
endforeach()

configure_package_config_file(cmake/zulgraphicsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zulgraphicsConfig.cmake INSTALL_DESTINATION ${zul_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zulgraphicsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zulgraphicsConfig.cmake
  ${PROJECT_BINARY_DIR}/zulgraphicsConfigVersion.cmake DESTINATION ${zul_package_dir})

set(zul_pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH zul_pc_prefix "/${zul_pc_dir}" /)
string(REGEX REPLACE "/$" "" zul_pc_prefix "${zul_pc_prefix}")
set(zul_pc_packages zulgraphics)
if(ZUL_STORE)
  list(APPEND zul_pc_packages zulstore)
endif()
foreach(package ${zul_pc_packages})
  configure_file(cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${zul_pc_dir})
endforeach()

# zul_compressed(SOURCE NAME): makes packaging/NAME.gz in the build of a text, which may speak of the project's version.
function(zul_compressed source name)
  find_program(GZIP gzip REQUIRED)
  set(text "${PROJECT_BINARY_DIR}/packaging/${name}")
  configure_file("${PROJECT_SOURCE_DIR}/${source}" "${text}" @ONLY)
  execute_process(COMMAND ${GZIP} -9nfk "${text}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(ZUL_APPS)
  zul_compressed(packaging/zulmap.1.in zulmap.1)
  set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)
  install(TARGETS zulmap RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/zulgraphics)
  install(FILES ${PROJECT_BINARY_DIR}/packaging/zulmap.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
