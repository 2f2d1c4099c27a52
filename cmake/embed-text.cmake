# SPDX-License-Identifier: Apache-2.0
# Writes OUTPUT, a C++ file that defines SYMBOL as the text of INPUT. Cut into short literals: compilers bound them.
file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" length)
set(lines "")
set(at 0)
while(at LESS length)
    string(SUBSTRING "${hex}" ${at} 128 part)
    string(REGEX REPLACE "(..)" "\\\\x\\1" escaped "${part}")
    string(APPEND lines "    \"${escaped}\"\n")
    math(EXPR at "${at} + 128")
endwhile()
file(WRITE "${OUTPUT}.new" "extern const char ${SYMBOL}[];\nconst char ${SYMBOL}[] =\n${lines}    \"\";\n")
file(COPY_FILE "${OUTPUT}.new" "${OUTPUT}")
