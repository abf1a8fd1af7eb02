# A Debian package of each component, by CPack; tools/package builds them, docs/packages.md tells what is in each.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sensordll)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "sensordll developers <sensordll@localhost>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
# Where a program of one package finds the libraries of another before they are installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/sensor ${PROJECT_BINARY_DIR}/platform/linux ${PROJECT_BINARY_DIR}/simcam)
set(CPACK_COMPONENTS_ALL)

set(this_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# debian_package(COMPONENT NAME name SECTION section MULTIARCH same|foreign SUMMARY text TEXT text
#                [DEPENDS package...] [RECOMMENDS package...] [SUGGESTS package...])
# DEPENDS names packages of this project, of this very version; those of the system are found by their libraries.
macro(debian_package component)
  cmake_parse_arguments(deb "" "NAME;SECTION;MULTIARCH;SUMMARY;TEXT;RECOMMENDS;SUGGESTS" "DEPENDS" ${ARGN})
  # A package is a group of two components, because its papers are no part of an installation without packages.
  string(TOUPPER ${component} upper)
  set(part ${upper}_PACKAGE)
  list(APPEND CPACK_COMPONENTS_ALL ${component} ${component}_papers)
  set(CPACK_COMPONENT_${upper}_GROUP ${component}_package)
  set(CPACK_COMPONENT_${upper}_PAPERS_GROUP ${component}_package)
  list(TRANSFORM deb_DEPENDS APPEND " ${this_version}")
  list(JOIN deb_DEPENDS ", " CPACK_DEBIAN_${part}_PACKAGE_DEPENDS)
  set(CPACK_DEBIAN_${part}_PACKAGE_NAME ${deb_NAME})
  set(CPACK_DEBIAN_${part}_PACKAGE_SECTION ${deb_SECTION})
  if(deb_SECTION STREQUAL libs)
    set(CPACK_DEBIAN_${part}_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)
  endif()
  # CPack has no variable for the second of these fields.
  set(CPACK_DEBIAN_${part}_PACKAGE_PRIORITY "optional\nMulti-Arch: ${deb_MULTIARCH}")
  set(CPACK_DEBIAN_${part}_PACKAGE_RECOMMENDS ${deb_RECOMMENDS})
  set(CPACK_DEBIAN_${part}_PACKAGE_SUGGESTS ${deb_SUGGESTS})
  set(CPACK_DEBIAN_${part}_DESCRIPTION "${deb_SUMMARY}\n${deb_TEXT}")

  install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
                ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${deb_NAME} COMPONENT ${component}_papers EXCLUDE_FROM_ALL)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/${deb_NAME}.lintian-overrides)
    install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/debian/${deb_NAME}.lintian-overrides RENAME ${deb_NAME}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component}_papers EXCLUDE_FROM_ALL)
  endif()
endmacro()

debian_package(sensordll NAME libsensordll1 SECTION libs MULTIARCH same RECOMMENDS libcameraplatform1
  SUMMARY "image-sensor control of a network camera"
  TEXT "Turns the parameters of a camera's user interface into commands for its
image-adjust driver, keeps them in schemes that switch by the time of day or by
day and night, and stores them on flash.

The library leaves the platform and the driver to the program that loads it.")
debian_package(sensordll_devel NAME libsensordll-dev SECTION libdevel MULTIARCH same DEPENDS libsensordll1
  SUGGESTS libcameraplatform-dev
  SUMMARY "image-sensor control of a network camera (development files)"
  TEXT "Headers of the library and of the platform that it asks for, with files for
CMake and pkg-config.")
debian_package(cameraplatform NAME libcameraplatform1 SECTION libs MULTIARCH same
  SUMMARY "platform of the image-sensor control on Linux"
  TEXT "Files, log, locks, threads, clock and device root for libsensordll1, on any
Linux. A camera with a platform of its own does not need it.")
debian_package(cameraplatform_devel NAME libcameraplatform-dev SECTION libdevel MULTIARCH same
  DEPENDS libcameraplatform1 libsensordll-dev
  SUMMARY "platform of the image-sensor control on Linux (development files)"
  TEXT "What is needed to link a program with the platform. Its headers are in
libsensordll-dev.")
debian_package(simcam NAME libsimcam1 SECTION libs MULTIARCH same DEPENDS libcameraplatform1
  SUMMARY "simulated camera for the image-sensor control"
  TEXT "Driver, lens, lights, video module and scene of a camera that is not there, for
programs and tests on a desk.")
debian_package(simcam_devel NAME libsimcam-dev SECTION libdevel MULTIARCH same DEPENDS libsimcam1 libcameraplatform-dev
  SUMMARY "simulated camera for the image-sensor control (development files)"
  TEXT "Headers of the simulated camera, with files for CMake and pkg-config.")
if(SENSORDLL_TOOLS)
  debian_package(tools NAME sensordll-tools SECTION utils MULTIARCH foreign
    DEPENDS libsensordll1 libcameraplatform1 libsimcam1
    SUMMARY "program that drives the image-sensor control by hand"
    TEXT "sensorctl plays the host of up to four channels on a simulated camera: it calls
every operation, moves the clock and the scene, makes commands fail, and shows
what the driver was told. With it comes a sample device tree.")
endif()
if(TARGET camerad)
  debian_package(camerad NAME camerad SECTION video MULTIARCH foreign
    DEPENDS libsensordll1 libcameraplatform1 libsimcam1 sensordll-tools
    SUMMARY "network camera with a simulated sensor"
    TEXT "Host process of a camera: it owns the channels of a simulated camera, drives the
image-sensor control library of each, and offers both over HTTP, to programs and
as a page for people, with the live picture.

It comes with a unit for systemd, which is not started by itself.")
endif()

# Not part of a common build: the date and the words come from CHANGELOG.md, whose top entry must be of this version.
set(changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(debian_changelog ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog-from)
add_custom_command(OUTPUT changelog.gz changelog.Debian.gz DEPENDS ${changelog} ${debian_changelog} VERBATIM
  COMMAND sh -c "exec \"$@\" >changelog.Debian" sh ${debian_changelog} ${changelog} ${CPACK_PACKAGE_NAME}
          ${PROJECT_VERSION} ${CPACK_DEBIAN_PACKAGE_RELEASE} ${CPACK_DEBIAN_PACKAGE_MAINTAINER}
  COMMAND sh -c "gzip -9nc \"$1\" >changelog.gz && gzip -9nf changelog.Debian" sh ${changelog})
add_custom_target(package_papers DEPENDS changelog.gz changelog.Debian.gz)
include(CPack)
