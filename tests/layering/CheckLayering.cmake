# Checks that the includes under SOURCE_DIR/src follow the library's layers:
#
#   platform/foundation  uses nothing else of the project
#   platform/ui          uses foundation
#   platform/capture     uses foundation; of ui only the view its preview layer draws into
#   platform/location    uses foundation
#   lib                  uses platform (no configuration, screens or utilities)
#
# ZQTGlobal.h is open to all. Qt Widgets (any header found in WIDGETS_DIR) belongs to ui: capture
# may use it only in the preview layer, foundation and location not at all. Prints one line per
# crossing and fails when there is any.
#
#   cmake -DSOURCE_DIR=<tree> -DWIDGETS_DIR=<QtWidgets include dir> -P CheckLayering.cmake

set(layers platform/foundation platform/ui platform/capture platform/location lib)
set(uses_platform/foundation platform/foundation/)
set(uses_platform/ui platform/foundation/ platform/ui/)
set(uses_platform/capture platform/foundation/ platform/capture/)
set(uses_platform/location platform/foundation/ platform/location/)
set(uses_lib platform/ lib/)
# The one narrow edge from capture into ui: the preview layer shows frames in a view.
set(preview_layer "^src/platform/capture/VideoPreviewLayer\\.(h|cpp)$")
set(preview_layer_view platform/ui/View.h)

set(crossings 0)
foreach(layer IN LISTS layers)
  file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/src/${layer}/*.h ${SOURCE_DIR}/src/${layer}/*.cpp)
  foreach(file IN LISTS files)
    file(STRINGS ${SOURCE_DIR}/${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*[<\"]([^>\"]+)[>\"].*$" "\\1" header "${line}")
      set(allowed FALSE)
      if(line MATCHES "\"")
        if(header STREQUAL "ZQTGlobal.h" OR (file MATCHES "${preview_layer}" AND header STREQUAL preview_layer_view))
          set(allowed TRUE)
        endif()
        foreach(prefix IN LISTS uses_${layer})
          string(FIND "${header}" "${prefix}" at)
          if(at EQUAL 0)
            set(allowed TRUE)
          endif()
        endforeach()
        set(why "${layer} may use only: ${uses_${layer}}")
      else()
        string(REGEX REPLACE "^QtWidgets/" "" name "${header}")
        set(allowed TRUE)
        if(NOT layer MATCHES "^(platform/ui|lib)$" AND NOT file MATCHES "${preview_layer}"
           AND (header MATCHES "^QtWidgets/" OR EXISTS ${WIDGETS_DIR}/${name}))
          set(allowed FALSE)
          set(why "Qt Widgets belongs to platform/ui")
        endif()
      endif()
      if(NOT allowed)
        message("layering: ${file} includes ${header} (${why})")
        math(EXPR crossings "${crossings} + 1")
      endif()
    endforeach()
  endforeach()
endforeach()

if(crossings GREATER 0)
  message(FATAL_ERROR "layering: ${crossings} include(s) cross a layer")
endif()
message("layering: every include keeps to its layer")
