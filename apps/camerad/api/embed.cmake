# cmake -DINPUT=FILE -DFUNCTION=NAME -DOUTPUT=FILE.cpp -P embed.cmake
# Writes a source file whose function returns the bytes of the input.
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],)(0x[0-9a-f][0-9a-f],))" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "#include \"apps/camerad/api/Embedded.h\"

namespace camerad {

const std::string& ${FUNCTION}() {
    static const unsigned char bytes[] = {
${bytes}};
    static const std::string text(reinterpret_cast<const char*>(bytes), sizeof(bytes));
    return text;
}

}  // namespace camerad
")
