# Installs the built library into a scratch prefix, then configures, builds and
# runs a consumer project that uses find_package(crvlib).
set(prefix ${BINARY_DIR}/consumer-prefix)
set(build ${BINARY_DIR}/consumer-build)
file(REMOVE_RECURSE ${prefix} ${build})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${prefix}
                RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumer -B ${build} -G Ninja
                        -DCMAKE_PREFIX_PATH=${prefix} RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "configure failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "build failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${build}/consumer
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "consumer returned ${rc}")
endif()
