# Debian packages: cpack in the build folder makes libwq-stat1 (the libraries), libwq-stat-dev and wqstat (the tool with its man page
# and the shells' completions).

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME wq-stat)
set(CPACK_PACKAGE_VENDOR "wq_lib")
set(CPACK_PACKAGE_CONTACT "wq_lib developers <wq_lib@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own, the first line of its description
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(WQ_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/WqDebian.cmake)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libwq-stat1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Classical statistical analyses, shared libraries
Descriptive statistics, regressions, correlation, Anova, tests of fit and of
variances, circular statistics, distributions and random numbers.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libwq-stat-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libwq-stat1 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Classical statistical analyses, development files
Headers, CMake package and pkg-config file of libwq_stat.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME wqstat)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION math)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libwq-stat1 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS gnuplot-nox)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "Statistical analyses of data files on the command line
Reports, listings, exports for R, JSON and pictures.")

include(CPack)
