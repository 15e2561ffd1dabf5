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

# The same program built from the pkg-config file alone.
find_program(PKG_CONFIG pkg-config REQUIRED)
find_program(CXX NAMES c++ g++ REQUIRED)
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/lib/pkgconfig
                        ${PKG_CONFIG} --cflags --libs crvlib
                OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "pkg-config does not know crvlib")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(COMMAND ${CXX} ${SOURCE_DIR}/tests/consumer/main.cpp ${flags} -o ${build}/consumer_pc
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "building with the pkg-config flags failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${build}/consumer_pc
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "the pkg-config consumer returned ${rc}")
endif()

# The installed crv finds the library by its relative RPATH, with no
# LD_LIBRARY_PATH, also after the tree has moved.
set(moved ${BINARY_DIR}/consumer-moved)
file(REMOVE_RECURSE ${moved})
file(COPY ${prefix}/ DESTINATION ${moved})
foreach(root ${prefix} ${moved})
  execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH
                          ${root}/bin/crv Constants.vxVBAR
                  OUTPUT_VARIABLE out RESULT_VARIABLE rc)
  if(rc OR NOT out STREQUAL "|\n")
    message(FATAL_ERROR "the installed crv in ${root} did not start: ${rc} ${out}")
  endif()
endforeach()
