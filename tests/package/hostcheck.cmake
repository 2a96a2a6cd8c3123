# Takes an operation after the other away from a working host library: each must be missed in a
# sentence. In: COMPILER, FOLDERS (of Qt's headers), CHECK (the source of the check), HOST_SDK, WORK.

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)
list(TRANSFORM FOLDERS PREPEND -I)

# compile_against(FOLDER): the compiler's command.
set(compile ${COMPILER} -std=c++20 -fPIC -fsyntax-only -I${WORK} ${FOLDERS} ${CHECK})

function(copy_sdk)
  file(REMOVE_RECURSE ${WORK})
  file(COPY ${HOST_SDK}/include/ DESTINATION ${WORK})
endfunction()

# expect_missed(HEADER CLASS OLD NEW): the check names the class after a change of the header.
function(expect_missed header class old new)
  copy_sdk()
  file(READ ${WORK}/${header} before)
  string(REPLACE "${old}" "${new}" after "${before}")
  if(after STREQUAL before)
    message(FATAL_ERROR "${header} has no ${old}")
  endif()
  file(WRITE ${WORK}/${header} "${after}")
  run_failing("the host library's ${class} must" ${compile})
endfunction()

copy_sdk()
run(${compile})
expect_missed(ovvector.h OvVector "double vz, bool isValid" "double vz, int isValid, int more")
expect_missed(ovpolyline.h OvSpline "void setDegree(int)" "void setOrder(int)")
expect_missed(ovpolyline.h OvPolyline "bool appendShape(const OvShape& shape, bool)"
              "bool appendShape(OvShape& shape)")
expect_missed(ovplugininterface.h OvPluginInfo "void set(" "void put(")
expect_missed(ovplugininterface.h OvPluginInterface "virtual void initTranslations() = 0" "")
