# Installed tree: headers, libraries, the package wq_stat for find_package, and wq_stat.pc and wq_exact.pc for pkg-config.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/wq_stat)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(wq_libraries wq_udf wq_report wq_stat)
set(wq_pkgconfig_files wq_stat.pc)
if(TARGET wq_exact)
  list(APPEND wq_libraries wq_exact)
  list(APPEND wq_pkgconfig_files wq_exact.pc)
endif()

install(TARGETS ${wq_libraries} EXPORT wq_stat
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  FILE_SET HEADERS COMPONENT development)

install(EXPORT wq_stat NAMESPACE wq:: FILE wq_stat-targets.cmake DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(cmake/wq_stat-config.cmake.in wq_stat-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(wq_stat-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/wq_stat-config.cmake ${PROJECT_BINARY_DIR}/wq_stat-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The prefix is told relative to the file itself, so that the tree may be moved.
file(RELATIVE_PATH pkgconfig_to_prefix ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
if(NOT BUILD_SHARED_LIBS)
  set(wq_static_definition " -DWQ_STATIC_LIBRARIES")
endif()
foreach(file IN LISTS wq_pkgconfig_files)
  configure_file(cmake/${file}.in ${file} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${file} DESTINATION ${pkgconfig_dir} COMPONENT development)
endforeach()
