# `cpack`: Debian packages of the libraries, of what is needed to build against them, and of the program. The preset
# `package` puts everything where Debian wants it; scripts/package.sh does the whole.
set(ZUL_PACKAGE_CONTACT "ZULGraphics maintainers <maintainers@zulgraphics.invalid>" CACHE STRING
  "Who answers for the Debian packages")

set(zul_packages libraries libzulgraphics${PROJECT_VERSION_MAJOR} development libzulgraphics-dev)
if(ZUL_APPS)
  list(APPEND zul_packages program zulmap)
endif()

# The papers that each package carries; a plain `cmake --install` leaves them out.
zul_compressed(CHANGELOG.md changelog)
zul_compressed(packaging/debian/changelog changelog.Debian)

set(components ${zul_packages})
while(components)
  list(POP_FRONT components component package)
  string(TOUPPER ${component} COMPONENT)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package})
  install(FILES packaging/debian/copyright ${PROJECT_BINARY_DIR}/packaging/changelog.gz
    ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
endwhile()
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzulgraphics-dev/examples
  COMPONENT development EXCLUDE_FROM_ALL FILES_MATCHING PATTERN "*.cpp")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zulgraphics)
set(CPACK_PACKAGE_CONTACT "${ZUL_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_RECOMMENDS fonts-liberation)
set(CPACK_COMPONENT_LIBRARIES_DESCRIPTION "two-dimensional graphics classes for map display
Turns map coordinates into pixels: geometry, a scaler with rotation and
perspective, a canvas with pens, brushes and fonts, raster pictures, and a
store that keeps all of these as objects in a file.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS libraries)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "two-dimensional graphics classes for map display (development files)
Headers, examples, and the files by which CMake and pkg-config find the
library.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_PROGRAM_DEPENDS libraries)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS fonts-liberation)  # the face of all labels, unless they choose another
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "draws vector maps
Draws maps of any format that GDAL reads into pictures and into a window to
move about in, with names, rotation and perspective, and keeps maps in
stores of which a view reads only what it shows. Comes with outlines of the
world's countries.")

include(CPack)
