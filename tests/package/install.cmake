# Installs BUILD into STAGE and moves the result to MOVED: nothing in it may depend on where it was installed.
file(REMOVE_RECURSE ${STAGE} ${MOVED})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${STAGE}
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${STAGE} ${MOVED})
