# Installs the built component into a scratch prefix and uses it as a host developer would:
# - the public headers stand alone and name no private dependency;
# - one translation unit including every public header builds through find_package and through
#   pkg-config (so the package declares every Qt module its headers need);
# - the README's host example (samples/host-example) builds both ways and reads the VIN of the
#   installed sample clip;
# - the installed programs start without LD_LIBRARY_PATH and find the installed sample clip.
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR}/home)
# Nothing reaches the user's own home: photos and settings go to a scratch one.
set(ENV{HOME} ${WORK_DIR}/home)
unset(ENV{XDG_CONFIG_HOME})
unset(ENV{XDG_DATA_HOME})
unset(ENV{XDG_DOCUMENTS_DIR})
unset(ENV{LD_LIBRARY_PATH})
set(ENV{QT_QPA_PLATFORM} offscreen)
set(expected_vin "1HGCM82633A004352")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors
    TIMEOUT 180)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGV}\n${output}\n${errors}")
  endif()
  set(last_output "${output}" PARENT_SCOPE)
  set(last_errors "${errors}" PARENT_SCOPE)
endfunction()

function(expect_output pattern what)
  if(NOT last_output MATCHES "${pattern}")
    message(FATAL_ERROR "${what} printed:\n${last_output}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(sample_clip ${prefix}/share/ZQTVINScanComponent/samples/vin-label-code39.webm)
if(NOT EXISTS ${sample_clip})
  message(FATAL_ERROR "the sample clip is not installed: ${sample_clip}")
endif()

file(GLOB_RECURSE headers RELATIVE ${prefix}/include/ZQTVINScanComponent ${prefix}/include/ZQTVINScanComponent/*.h)
list(SORT headers)
list(LENGTH headers header_count)
if(header_count LESS 5)
  message(FATAL_ERROR "only ${header_count} public headers installed")
endif()
set(all_headers_source "// Every installed public header, and the Qt types they name.\n")
foreach(header IN LISTS headers)
  file(READ ${prefix}/include/ZQTVINScanComponent/${header} text)
  if(text MATCHES "#include[ \t]*[<\"](ZXing/|plist/|fontconfig/)")
    message(FATAL_ERROR "${header} includes a private dependency")
  endif()
  if(header MATCHES "_p\\.h$")
    message(FATAL_ERROR "private header installed: ${header}")
  endif()
  string(APPEND all_headers_source "#include <${header}>\n")
endforeach()
# Headers name QGeoPositionInfo (location callbacks) and QVideoFrame (frame sources).
string(APPEND all_headers_source
  "#include <QGeoPositionInfo>\n#include <QVideoFrame>\n"
  "int main() { return QGeoPositionInfo().isValid() || QVideoFrame().isValid() ? 1 : 0; }\n")
set(all_headers ${WORK_DIR}/all_headers.cpp)
file(WRITE ${all_headers} "${all_headers_source}")

# find_package
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumer -B ${WORK_DIR}/all-headers
  -DCMAKE_PREFIX_PATH=${prefix} -DALL_HEADERS_SOURCE=${all_headers})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/all-headers)
run(${WORK_DIR}/all-headers/all-headers)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/samples/host-example -B ${WORK_DIR}/host-example -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/host-example)
run(${WORK_DIR}/host-example/host-example ${sample_clip})
expect_output("^${expected_vin} scanned valid\n" "the host example (find_package)")

# pkg-config
find_program(PKG_CONFIG pkg-config REQUIRED)
set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig:${prefix}/lib/x86_64-linux-gnu/pkgconfig")
run(${PKG_CONFIG} --cflags --libs ZQTVINScanComponent)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(c++ -std=c++17 ${all_headers} ${flags} -o ${WORK_DIR}/all-headers-pc)
run(c++ -std=c++17 ${SOURCE_DIR}/samples/host-example/main.cpp ${flags} -o ${WORK_DIR}/host-example-pc)
set(ENV{LD_LIBRARY_PATH} "${prefix}/lib")
run(${WORK_DIR}/host-example-pc ${sample_clip})
expect_output("^${expected_vin} scanned valid\n" "the host example (pkg-config)")
unset(ENV{LD_LIBRARY_PATH})

# The installed programs, from the prefix alone.
run(${prefix}/bin/zqt-vin check ${expected_vin})
expect_output("${expected_vin}\tvalid" "zqt-vin check")
run(${prefix}/bin/zqt-vin-capture --claim INSTALLED --exit-on-result --timeout 120)
expect_output("\"vin\":\"${expected_vin}\"" "zqt-vin-capture on the installed sample clip")
string(FIND "${last_errors}" "${sample_clip}" clip_named)
if(clip_named EQUAL -1)
  message(FATAL_ERROR "zqt-vin-capture did not scan the installed clip:\n${last_errors}")
endif()
