# Runs PROGRAM, by EMULATOR where there is one, with ARGUMENTS and compares what it writes to
# standard output with EXPECTED.txt. Where EXPECTED.cfg exists, it is compared with the file that the
# last argument names.
cmake_path(GET PROGRAM FILENAME name)
execute_process(
  COMMAND ${EMULATOR} "${PROGRAM}" ${ARGUMENTS}
  OUTPUT_FILE "${name}.txt"
  COMMAND_ERROR_IS_FATAL ANY)

function(compare expected actual)
  execute_process(COMMAND diff -u "${expected}" "${actual}" RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The output is not as expected.")
  endif()
endfunction()

compare("${EXPECTED}.txt" "${name}.txt")
if(EXISTS "${EXPECTED}.cfg")
  list(GET ARGUMENTS -1 written)
  compare("${EXPECTED}.cfg" "${written}")
endif()
