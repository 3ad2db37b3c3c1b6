# `cmake --install`: libraries, headers, a package for find_package(zulgraphics) and one for pkg-config.
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
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT zulgraphicsTargets NAMESPACE zulgraphics:: DESTINATION ${zul_package_dir})

install(DIRECTORY zul/ DESTINATION ${zul_include_dir}/zul FILES_MATCHING PATTERN "*.h"
  PATTERN zul/store EXCLUDE)
if(ZUL_STORE)
  install(FILES zul/store/export.h zul/store/store.h DESTINATION ${zul_include_dir}/zul/store)
endif()
install(FILES platform/crt.h platform/dib_header.h platform/export.h platform/gdi.h
  DESTINATION ${zul_include_dir}/platform)
# What a host may settle about the software device.
if(NOT WIN32)
  install(FILES platform/software/display.h platform/software/images.h platform/software/resources.h
    DESTINATION ${zul_include_dir}/platform/software)
endif()

configure_package_config_file(cmake/zulgraphicsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zulgraphicsConfig.cmake INSTALL_DESTINATION ${zul_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zulgraphicsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zulgraphicsConfig.cmake
  ${PROJECT_BINARY_DIR}/zulgraphicsConfigVersion.cmake DESTINATION ${zul_package_dir})

set(zul_pc_packages zulgraphics)
if(ZUL_STORE)
  list(APPEND zul_pc_packages zulstore)
endif()
foreach(package ${zul_pc_packages})
  configure_file(cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
