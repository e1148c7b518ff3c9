# Run by the build: -DROOT=<tree> -DLIST=<manifest> -DSOURCE=<C++ source to write>.
file(STRINGS ${LIST} entries)
list(POP_FRONT entries header function)
set(arrays "")
set(rows "")
set(index 0)
foreach(entry IN LISTS entries)
  string(REGEX MATCH "^(.*)\\|(.*)$" whole "${entry}")
  set(path ${CMAKE_MATCH_2})
  file(READ ${ROOT}/${CMAKE_MATCH_1} hex HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  string(REPLACE "0x0a," "0x0a,\n" bytes "${bytes}")
  # The zero byte at the end keeps the array of an empty file legal.
  string(APPEND arrays "const unsigned char kBytes${index}[] = {\n${bytes}0};\n")
  string(APPEND rows "        {\"${path}\", view(kBytes${index}, sizeof kBytes${index} - 1)},\n")
  math(EXPR index "${index} + 1")
endforeach()
file(WRITE ${SOURCE} "#include \"${header}\"

namespace tindrel {
namespace {

std::string_view view(const unsigned char* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

${arrays}
}  // namespace

std::span<const EmbeddedFile> ${function}();

std::span<const EmbeddedFile> ${function}() {
    static const EmbeddedFile kFiles[] = {
${rows}    };
    return kFiles;
}

}  // namespace tindrel
")
