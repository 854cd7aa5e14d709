# cmake -DINPUT=<file> -DOUTPUT=<cpp> -DSYMBOL=<name> -P EmbedFile.cmake
# Writes a source that defines `SYMBOL`, a std::string_view over the file.
file(READ "${INPUT}" content HEX)
string(LENGTH "${content}" digits)
math(EXPR size "${digits} / 2")
string(REGEX REPLACE "(................................)" "\\1\n" content "${content}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," content "${content}")
file(WRITE "${OUTPUT}" "#include <string_view>

namespace OvProducer {
namespace {
constexpr unsigned char kContent[${size}] = {
${content}};
}
extern const std::string_view ${SYMBOL};
const std::string_view ${SYMBOL}(reinterpret_cast<const char*>(kContent), sizeof kContent);
}  // namespace OvProducer
")
