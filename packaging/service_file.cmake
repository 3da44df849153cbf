# Writes the service file with which the session bus starts Kestro.
#
# OUTPUT is the file, PROGRAM the program's full path. The bus splits Exec into words as a shell does, without expanding
# anything, so the path is quoted. Backslashes are doubled once more, because the file's own format takes one of two.
function(kestro_write_service_file OUTPUT PROGRAM)
  string(REPLACE "'" "'\\''" KESTRO_PROGRAM "${PROGRAM}")
  set(KESTRO_PROGRAM "'${KESTRO_PROGRAM}'")
  string(REPLACE "\\" "\\\\" KESTRO_PROGRAM "${KESTRO_PROGRAM}")
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/kestro.Readout.service.in "${OUTPUT}" @ONLY)
endfunction()
