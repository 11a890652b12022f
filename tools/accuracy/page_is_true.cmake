# Fails when the committed page is not what the program writes.
execute_process(COMMAND ${PROGRAM} ${FOLDER} OUTPUT_VARIABLE written COMMAND_ERROR_IS_FATAL ANY)
file(READ ${PAGE} committed)
if(NOT written STREQUAL committed)
  message(FATAL_ERROR "${PAGE} is not what tools/accuracy writes; renew it with: cmake --build <build> --target accuracy_page")
endif()
