# Writes a C++ source that holds text files byte by byte: cmake -DOUTPUT=... -DINPUTS=a;b -P embed_texts.cmake
# Each becomes an entry of simcam::embedded_texts under its file name.
set(arrays "")
set(entries "")
set(number 0)
foreach(input IN LISTS INPUTS)
  file(READ "${input}" contents HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," contents "${contents}")
  get_filename_component(name "${input}" NAME)
  string(APPEND arrays "const unsigned char text_${number}[] = {${contents}0x00};\n")
  string(APPEND entries
    "    {\"${name}\", {reinterpret_cast<const char*>(text_${number}), sizeof(text_${number}) - 1}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}"
  "#include \"simcam/embedded_texts.h\"\n\nnamespace simcam {\nnamespace {\n\n${arrays}\n}  // namespace\n\n"
  "const std::vector<embedded_text>& embedded_texts()\n{\n"
  "    static const std::vector<embedded_text> texts = {\n${entries}    };\n    return texts;\n}\n\n"
  "}  // namespace simcam\n")
