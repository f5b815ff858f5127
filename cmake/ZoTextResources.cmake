# Helpers of the scripts that compile texts into the library as resources
# (ZoReportResources.cmake, ZoPscmInfo.cmake). A text travels as a list of
# bytes in hexadecimal, each followed by a blank ("2f 2a 0a "), so that a
# replacement can never match across the boundary of two bytes.

# The bytes of FILE, as such a list, into VAR.
function(zo_resource_read_bytes file var)
  file(READ "${file}" hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "\\1 " bytes "${hex}")
  set(${var} "${bytes}" PARENT_SCOPE)
endfunction()

# Decodes the two-byte UTF-8 sequences of U+0080 to U+00FF in VAR into their
# ISO-8859-1 bytes: resources are 8-bit text.
function(zo_resource_utf8_to_latin1 var)
  set(bytes "${${var}}")
  foreach(low RANGE 128 191)
    math(EXPR upper "${low} + 64")
    math(EXPR low_hex "${low}" OUTPUT_FORMAT HEXADECIMAL)
    math(EXPR upper_hex "${upper}" OUTPUT_FORMAT HEXADECIMAL)
    string(SUBSTRING "${low_hex}" 2 2 low_hex)
    string(SUBSTRING "${upper_hex}" 2 2 upper_hex)
    string(TOLOWER "${low_hex}" low_hex)
    string(TOLOWER "${upper_hex}" upper_hex)
    string(REPLACE "c2 ${low_hex} " "${low_hex} " bytes "${bytes}")
    string(REPLACE "c3 ${low_hex} " "${upper_hex} " bytes "${bytes}")
  endforeach()
  set(${var} "${bytes}" PARENT_SCOPE)
endfunction()

# Makes every line end of VAR a carriage return and a line feed.
function(zo_resource_crlf var)
  string(REPLACE "0d 0a " "0a " bytes "${${var}}")
  string(REPLACE "0a " "0d 0a " bytes "${bytes}")
  set(${var} "${bytes}" PARENT_SCOPE)
endfunction()

# The bytes of VAR as the body of a C++ array initialiser, into OUT; the
# number of bytes into OUT_SIZE.
function(zo_resource_initializer var out out_size)
  string(LENGTH "${${var}}" length)
  math(EXPR size "${length} / 3")
  string(REGEX REPLACE "([0-9a-f][0-9a-f]) " "0x\\1," body "${${var}}")
  # A line break after every 32 bytes keeps the generated file readable.
  string(REGEX REPLACE "((0x..,){32})" "\\1\n" body "${body}")
  set(${out} "${body}" PARENT_SCOPE)
  set(${out_size} "${size}" PARENT_SCOPE)
endfunction()

# Writes CONTENT to FILE only if it differs, so that an unchanged resource
# compiles nothing again.
function(zo_resource_write_if_different file content)
  file(WRITE "${file}.tmp" "${content}")
  file(COPY_FILE "${file}.tmp" "${file}" ONLY_IF_DIFFERENT)
  file(REMOVE "${file}.tmp")
endfunction()
