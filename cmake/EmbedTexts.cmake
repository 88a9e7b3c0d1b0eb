# Run as a script: writes OUTPUT, a source that defines `std::span<const EmbeddedText> FUNCTION()`
# with the texts of FILES, each under its file name without the extension, in the order given.
file(WRITE "${OUTPUT}.new" "#include \"base/embeddedtext.h\"\n\nnamespace ellwynd {\n\n"
  "std::span<const EmbeddedText> ${FUNCTION}();\n"
  "std::span<const EmbeddedText> ${FUNCTION}() {\n    static constexpr EmbeddedText texts[]{\n")
foreach(file IN LISTS FILES)
  get_filename_component(name "${file}" NAME_WLE)
  file(READ "${file}" text)
  file(APPEND "${OUTPUT}.new" "        {\"${name}\", R\"~~~~(${text})~~~~\"},\n")
endforeach()
file(APPEND "${OUTPUT}.new" "    };\n    return texts;\n}\n\n} // namespace ellwynd\n")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
