# The PIC toolchain that scripts/setup-pic.sh sets up: SDCC's pic14 port in a prefix of its own
# with the 16F877A's header and device library, and gpsim. Robot programs are compiled with
#   ${KESTRONE_SDCC} -mpic14 -p16f877a --use-non-free prog.c     (makes prog.hex and prog.cod)
# and run with  ${KESTRONE_GPSIM} -i -c script.stc.
# Sets KESTRONE_PIC_FOUND, KESTRONE_SDCC and KESTRONE_GPSIM for the directories that follow.
include_guard(GLOBAL)

set(KESTRONE_PIC_PREFIX "/opt/kestrone-pic" CACHE PATH "Prefix of the PIC toolchain built by scripts/setup-pic.sh")
option(KESTRONE_REQUIRE_PIC "Fail to configure when the PIC toolchain is missing" OFF)

find_program(KESTRONE_SDCC sdcc PATHS "${KESTRONE_PIC_PREFIX}/bin" NO_DEFAULT_PATH NO_CACHE)
find_program(KESTRONE_GPSIM gpsim NO_CACHE)

set(_pic_missing "")
foreach(_pic_part IN ITEMS share/sdcc/lib/pic14/libsdcc.lib share/sdcc/non-free/include/pic14/pic16f877a.h
                           share/sdcc/non-free/lib/pic14/pic16f877a.lib)
  if(NOT EXISTS "${KESTRONE_PIC_PREFIX}/${_pic_part}")
    list(APPEND _pic_missing "${KESTRONE_PIC_PREFIX}/${_pic_part}")
  endif()
endforeach()
if(NOT KESTRONE_SDCC)
  list(APPEND _pic_missing "${KESTRONE_PIC_PREFIX}/bin/sdcc")
endif()
if(NOT KESTRONE_GPSIM)
  list(APPEND _pic_missing "gpsim")
endif()

if(_pic_missing)
  set(KESTRONE_PIC_FOUND OFF)
  list(JOIN _pic_missing ", " _pic_missing)
  if(KESTRONE_REQUIRE_PIC)
    message(FATAL_ERROR "The PIC toolchain is required (KESTRONE_REQUIRE_PIC) but missing: ${_pic_missing}. "
                        "Run scripts/setup-pic.sh (KESTRONE_PIC_PREFIX=${KESTRONE_PIC_PREFIX}).")
  endif()
  message(STATUS "PIC toolchain not found (missing: ${_pic_missing}): the PIC tests are left out. "
                 "scripts/setup-pic.sh sets it up.")
else()
  set(KESTRONE_PIC_FOUND ON)
  message(STATUS "PIC toolchain: ${KESTRONE_SDCC}, ${KESTRONE_GPSIM}")
endif()
