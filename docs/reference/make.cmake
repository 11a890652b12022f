# cmake -DDOXYGEN=program -DFOLDER=folder of the Doxyfile -P make.cmake: makes FOLDER/html anew; a warning is an error.
file(REMOVE_RECURSE ${FOLDER}/html)
execute_process(COMMAND ${DOXYGEN} ${FOLDER}/Doxyfile WORKING_DIRECTORY ${FOLDER} RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "Doxygen found the faults above")
endif()
foreach(page index.html classwq__lib_1_1BasicStatistics.html include_2wq__stat_2distributions_8h.html
             exact_2include_2wq__exact_2distributions_8h.html csv__report_8h.html text_8h.html one-sample.svg)
  if(NOT EXISTS ${FOLDER}/html/${page})
    message(FATAL_ERROR "The reference has no ${page}")
  endif()
endforeach()
message("${FOLDER}/html/index.html")
