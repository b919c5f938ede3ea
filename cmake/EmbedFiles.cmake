# Writes the source and header that hold the bytes of FILES; see Embed.cmake.
file(WRITE ${HEADER} "#pragma once\n#include <string_view>\n\n"
  "namespace velmora::${NAME} {\n/// The bytes of a packed file; empty if there is none of that name.\n"
  "std::string_view Find(std::string_view name);\n}\n")
set(tables "")
set(lookups "")
set(index 0)
foreach(file ${FILES})
  get_filename_component(base ${file} NAME)
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND tables "const unsigned char kFile${index}[] = {${bytes}0};\n")
  string(APPEND lookups
    "    if (name == \"${base}\") return {reinterpret_cast<const char*>(kFile${index}), sizeof kFile${index} - 1};\n")
  math(EXPR index "${index} + 1")
endforeach()
file(WRITE ${OUTPUT} "#include \"${NAME}.h\"\n\nnamespace velmora::${NAME} {\nnamespace {\n${tables}}\n\n"
  "std::string_view Find(std::string_view name)\n{\n${lookups}    return {};\n}\n}\n")
