# The window's first start on a 1280 x 800 screen under Xvfb, with no settings kept: at each zoom
# the whole window (its picture) is between 1000 x 650 and 1280 x 800, whatever it holds.
set(config "${OUT_DIR}/first-start-config")
foreach(zoom 1 3)
  file(REMOVE_RECURSE "${config}")
  set(shot "${OUT_DIR}/first-start-${zoom}.png")
  file(REMOVE "${shot}")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "XDG_CONFIG_HOME=${config}"
            "${XVFB_RUN}" -a -s "-screen 0 1280x800x24" "${HOST}" window --zoom ${zoom}
            --shot "${shot}" --quit-after-play
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
  if(NOT status EQUAL 0 OR NOT EXISTS "${shot}")
    message(FATAL_ERROR "zoom ${zoom}: the window exited with ${status}\n${out}\n${err}")
  endif()
  # The PNG header: width and height are big-endian 32-bit numbers at bytes 16 and 20.
  file(READ "${shot}" header LIMIT 24 HEX)
  string(SUBSTRING "${header}" 32 8 width_hex)
  string(SUBSTRING "${header}" 40 8 height_hex)
  math(EXPR width "0x${width_hex}")
  math(EXPR height "0x${height_hex}")
  if(width LESS 1000 OR width GREATER 1280 OR height LESS 650 OR height GREATER 800)
    message(FATAL_ERROR "zoom ${zoom}: the first start is ${width} x ${height}")
  endif()
  message(STATUS "zoom ${zoom}: ${width} x ${height}")
endforeach()
