# SPDX-License-Identifier: Apache-2.0
# Makes a source file that holds a text: cmake -DINPUT=<file> -DOUTPUT=<file.cpp> -DNAME=<function> -P Embed.cmake
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(................................................................................)" "\\1\n" bytes
                     "${bytes}")
get_filename_component(file "${INPUT}" NAME)
file(
    WRITE "${OUTPUT}"
    "/* Made from ${file} by the build */
#include \"camera/EmbeddedDescriptions.h\"

namespace MarlowSim {

static constexpr unsigned char kBytes[] = {
${bytes}
};

std::string_view ${NAME}() { return {reinterpret_cast<const char*>(kBytes), sizeof(kBytes)}; }

}  // namespace MarlowSim
")
