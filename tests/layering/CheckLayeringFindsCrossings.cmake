# The layering check must fail on the deliberate crossings under crossings/ and name each one,
# and only those: allowed includes in the same files stay quiet.
#
#   cmake -DCHECK=<CheckLayering.cmake> -DWIDGETS_DIR=<QtWidgets include dir> -P CheckLayeringFindsCrossings.cmake

get_filename_component(here ${CMAKE_CURRENT_LIST_FILE} DIRECTORY)
execute_process(
  COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${here}/crossings -DWIDGETS_DIR=${WIDGETS_DIR} -P ${CHECK}
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(status EQUAL 0)
  message(FATAL_ERROR "the layering check passed a tree full of crossings:\n${out}")
endif()
set(expected
  "src/platform/foundation/UsesUi.cpp includes platform/ui/View.h"
  "src/platform/foundation/UsesUi.cpp includes QLabel"
  "src/platform/capture/UsesUi.cpp includes platform/ui/View.h"
  "src/platform/capture/UsesUi.cpp includes QtWidgets/QWidget"
  "src/platform/location/UsesCapture.h includes platform/capture/CaptureDevice.h"
  "src/platform/ui/UsesModel.cpp includes Model/ZQTVINScanComponentConstants.h"
  "src/lib/Categories/UsesModel.cpp includes Model/ZQTVINScanComponentConstants.h")
foreach(crossing IN LISTS expected)
  string(FIND "${out}" "layering: ${crossing} (" at)
  if(at LESS 0)
    message(FATAL_ERROR "the layering check missed: ${crossing}\n${out}")
  endif()
endforeach()
string(REGEX MATCHALL "layering: src/" reported "${out}")
list(LENGTH reported count)
list(LENGTH expected wanted)
if(NOT count EQUAL wanted)
  message(FATAL_ERROR "the layering check reported ${count} crossings, not ${wanted}:\n${out}")
endif()
