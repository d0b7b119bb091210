# Writes the bytes of IN, unchanged, as the string constant NAME into the header OUT.
file(READ "${IN}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "\\\\x\\1" escaped "${hex}")
string(LENGTH "${escaped}" length)
set(lines "")
set(lineWidth 128)  # 32 bytes per source line
set(offset 0)
while(offset LESS length)
    string(SUBSTRING "${escaped}" ${offset} ${lineWidth} chunk)
    string(APPEND lines "    \"${chunk}\"\n")
    math(EXPR offset "${offset} + ${lineWidth}")
endwhile()
file(WRITE "${OUT}.tmp"
    "// Generated from ${REL}; edit that file instead.\n#pragma once\n\n"
    "namespace qam::embedded {\n"
    "inline constexpr char ${NAME}[] =\n${lines}    \"\";\n"
    "}  // namespace qam::embedded\n")
file(COPY_FILE "${OUT}.tmp" "${OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUT}.tmp")
