# Writes a source file that holds the bytes of each file under its own name.
set(arrays "")
set(branches "")
set(number 0)
foreach(file IN LISTS FILES)
  get_filename_component(name ${file} NAME)
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${hex}")
  string(REGEX REPLACE "('[^']*',('[^']*',)?('[^']*',)?('[^']*',)?('[^']*',)?('[^']*',)?('[^']*',)?('[^']*',)?)" "  \\1\n" bytes "${bytes}")
  string(APPEND arrays "constexpr char file${number}[] = {\n${bytes}};\n")
  string(APPEND branches
    "  if (name == \"${name}\") return {file${number}, sizeof file${number}};\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUTPUT} "#include \"sandbox/core/Embedded.h\"

namespace zuvi::sandbox {
namespace {
${arrays}} // namespace

std::string_view embeddedFile(std::string_view name) {
${branches}  return {};
}

} // namespace zuvi::sandbox
")
