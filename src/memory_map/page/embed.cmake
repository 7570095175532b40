# embed.cmake: cmake -DOUTPUT=page.cpp -P embed.cmake
# Puts style and scripts into page.html and writes it as a C++ source, cut in
# two where the data go. Texts become numbers, since compilers limit the length
# of a literal.
cmake_minimum_required(VERSION 3.20)

foreach(part IN ITEMS page.html page.css model.js bars.js table.js page.js)
  file(READ ${CMAKE_CURRENT_LIST_DIR}/${part} ${part})
endforeach()
string(REPLACE "@style@" "${page.css}" page "${page.html}")
string(REPLACE "@script@" "${model.js}${bars.js}${table.js}${page.js}" page
  "${page}")
string(FIND "${page}" "@data@" begin)
if(begin EQUAL -1)
  message(FATAL_ERROR "page.html lacks @data@")
endif()
string(SUBSTRING "${page}" 0 ${begin} head)
math(EXPR end "${begin} + 6")
string(SUBSTRING "${page}" ${end} -1 tail)

set(source "// Made by the build out of the files of memory_map/page.
#include \"memory_map/map_page.h\"

namespace tova_fw_builder {
namespace {
")
foreach(part IN ITEMS head tail)
  string(HEX "${${part}}" bytes)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
  string(REGEX REPLACE "(.......,........,........,........,........,........,........,........,)"
    "\\1\n" bytes "${bytes}")
  string(APPEND source "constexpr char k_${part}[] = {${bytes}};\n")
endforeach()
string(APPEND source "}  // namespace

const std::string_view kPageHead(k_head, sizeof k_head);
const std::string_view kPageTail(k_tail, sizeof k_tail);

}  // namespace tova_fw_builder
")
file(WRITE ${OUTPUT} "${source}")
