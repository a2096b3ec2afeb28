# Opens the real window under Xvfb, plays a script, writes a snapshot, and checks that the PNG has
# the panel's size (344 x 282 at a zoom of 1), or with WORLD the size of the panel and that arena
# side by side (WIDTH x HEIGHT).
if(NOT DEFINED WIDTH)
  set(WIDTH 344)
  set(HEIGHT 282)
endif()
set(world_args)
if(DEFINED WORLD)
  set(world_args --world "${WORLD}")
endif()
file(REMOVE "${OUT}")
execute_process(
  COMMAND "${XVFB_RUN}" -a "${HOST}" window --play "${SCRIPT}" ${world_args} --snapshot "${OUT}"
          --quit-after-play
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the window exited with ${status}\n${out}\n${err}")
endif()
if(NOT EXISTS "${OUT}")
  message(FATAL_ERROR "no snapshot was written")
endif()
# The PNG header: width and height are big-endian 32-bit numbers at bytes 16 and 20.
file(READ "${OUT}" header LIMIT 24 HEX)
string(SUBSTRING "${header}" 0 16 signature)
string(SUBSTRING "${header}" 32 8 width_hex)
string(SUBSTRING "${header}" 40 8 height_hex)
if(NOT signature STREQUAL "89504e470d0a1a0a")
  message(FATAL_ERROR "the snapshot is not a PNG")
endif()
math(EXPR width "0x${width_hex}")
math(EXPR height "0x${height_hex}")
if(NOT width EQUAL WIDTH OR NOT height EQUAL HEIGHT)
  message(FATAL_ERROR "the snapshot is ${width} x ${height}, not ${WIDTH} x ${HEIGHT}")
endif()
message(STATUS "snapshot ${width} x ${height}")
