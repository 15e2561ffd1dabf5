# Compiles the type library description crv prints with widl into a type
# library. Without widl, Wine's IDL files or stdole2.tlb it says "skipped:"
# and why, and CTest reports the test as skipped.
#   cmake -DCRV=<crv> -DWIDL=<widl> -DIDL_DIR=<dir of oaidl.idl>
#         -DTLB_DIR=<dir of stdole2.tlb> -DWORK_DIR=<scratch dir> -P compile_idl.cmake
if(NOT WIDL OR NOT IDL_DIR OR NOT TLB_DIR)
  message("skipped: needs x86_64-w64-mingw32-widl (mingw-w64-tools), Wine's IDL files and "
          "stdole2.tlb (libwine-dev); found widl '${WIDL}', IDL '${IDL_DIR}', tlb '${TLB_DIR}'")
  return()
endif()
file(MAKE_DIRECTORY ${WORK_DIR})
file(REMOVE ${WORK_DIR}/crvlib.tlb)
execute_process(COMMAND ${CRV} idl OUTPUT_FILE ${WORK_DIR}/crvlib.idl RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "crv idl failed: ${status}")
endif()
# widl writes its -o output into the working directory.
execute_process(COMMAND ${WIDL} -I${IDL_DIR} -L${TLB_DIR} -t -o crvlib.tlb crvlib.idl
                WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE status
                OUTPUT_VARIABLE out ERROR_VARIABLE err)
message("${out}${err}")
if(NOT status EQUAL 0 OR NOT EXISTS ${WORK_DIR}/crvlib.tlb)
  message(FATAL_ERROR "widl did not compile the type library description: ${status}")
endif()
