# Writes INPUT as a C++ array of bytes, each combined with KEY by exclusive
# or: cmake -DINPUT=... -DOUTPUT=... -DKEY=0x5A -DNAME=... -P ZoScramble.cmake
file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" hex_length)
math(EXPR byte_count "${hex_length} / 2")
set(body "")
set(column 0)
math(EXPR last "${byte_count} - 1")
foreach(i RANGE 0 ${last})
  math(EXPR offset "${i} * 2")
  string(SUBSTRING "${hex}" ${offset} 2 byte)
  math(EXPR scrambled "0x${byte} ^ ${KEY}" OUTPUT_FORMAT HEXADECIMAL)
  string(APPEND body "${scrambled},")
  math(EXPR column "${column} + 1")
  if(column EQUAL 16)
    string(APPEND body "\n")
    set(column 0)
  endif()
endforeach()
file(WRITE "${OUTPUT}.tmp"
  "// Generated from ${INPUT}; do not edit.\n"
  "inline constexpr unsigned char ${NAME}Key = ${KEY};\n"
  "inline constexpr unsigned int ${NAME}Size = ${byte_count};\n"
  "inline constexpr unsigned char ${NAME}[] = {\n${body}\n};\n")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
