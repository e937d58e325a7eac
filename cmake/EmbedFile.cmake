# Writes OUTPUT, a C++ file defining the bytes of INPUT as
# pavo::files::embeddedSampleDrawing().
file(READ ${INPUT} hex HEX)
string(LENGTH "${hex}" hexlen)
math(EXPR size "${hexlen} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f])" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "// Generated from ${INPUT}; do not edit.\n#include <string_view>\nnamespace pavo::files {\nstatic const unsigned char kBytes[] = {\n${bytes}0};\nstd::string_view embeddedSampleDrawing() { return std::string_view(reinterpret_cast<const char*>(kBytes), ${size}); }\n}\n")
