# Target coverage, in a build with the preset coverage: which lines and branches of the libraries the last test run reached.
#
# Left out of the branches: those that only an exception takes (nearly every call has one; the tests of failed allocations look after them)
# and those that gcov lists on lines without code, such as a closing bracket. Nothing else is left out.

if(NOT WQ_LIBRARY_OPTIONS MATCHES "--coverage")
  return()
endif()
find_program(GCOVR gcovr REQUIRED)

set(report ${PROJECT_BINARY_DIR}/report)
set(gcovr_sources)
foreach(folder src support include)
  list(APPEND gcovr_sources --filter ${PROJECT_SOURCE_DIR}/${folder}/)
endforeach()
add_custom_target(coverage
  COMMAND ${CMAKE_COMMAND} -E make_directory ${report}
  COMMAND ${GCOVR} --root ${PROJECT_SOURCE_DIR} ${gcovr_sources} --exclude-throw-branches --exclude-unreachable-branches
          --html-details ${report}/index.html --json ${report}/coverage.json --print-summary
          --fail-under-line 98 --fail-under-branch 90 ${PROJECT_BINARY_DIR}/CMakeFiles
  COMMAND ${CMAKE_COMMAND} -E echo "Line by line: ${report}/index.html"
  VERBATIM)
