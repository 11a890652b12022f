# cmake -DCOMMAND=program;argument... -DEXPECTED=file -DOUTPUT=file -P compare_output.cmake
# Runs the command, keeps what it prints in OUTPUT, and fails unless that is EXPECTED byte for byte, nothing was printed as an error,
# and the command ended well.

execute_process(COMMAND ${COMMAND} OUTPUT_FILE ${OUTPUT} ERROR_VARIABLE errors RESULT_VARIABLE result)
if(NOT result STREQUAL "0" OR NOT errors STREQUAL "")
  message(FATAL_ERROR "${COMMAND} ended with ${result}: ${errors}")
endif()

execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${EXPECTED} ${OUTPUT} RESULT_VARIABLE different ERROR_QUIET)
if(NOT different STREQUAL "0")
  file(READ ${OUTPUT} printed)
  message(FATAL_ERROR "the output differs from ${EXPECTED}:\n${printed}")
endif()
