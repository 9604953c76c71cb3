# Turns one scdoc source into a compressed manual page:
#   cmake -DSCDOC=<scdoc> -DIN=<page.1.scd> -DOUT=<page.1.gz> -P scdoc.cmake
get_filename_component(_dir "${OUT}" DIRECTORY)
file(MAKE_DIRECTORY "${_dir}")
string(REGEX REPLACE "\\.gz$" "" _plain "${OUT}")
execute_process(COMMAND "${SCDOC}" INPUT_FILE "${IN}" OUTPUT_FILE "${_plain}" RESULT_VARIABLE _rc)
if(NOT _rc EQUAL 0)
  file(REMOVE "${_plain}")
  message(FATAL_ERROR "scdoc failed on ${IN}")
endif()
# -n: no name or time stamp in the archive, so a rebuild gives the same bytes.
execute_process(COMMAND gzip -9nf "${_plain}" RESULT_VARIABLE _rc)
if(NOT _rc EQUAL 0)
  message(FATAL_ERROR "gzip failed on ${_plain}")
endif()
