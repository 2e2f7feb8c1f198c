# Turns every file of the web viewer's folder into one C++ source: each file's bytes as an array, with
# its path below the folder, its content type and an entity tag made of its content's hash, in the
# table that tov::utils::debugger::impl::ViewerFiles searches. Run at build time by the library's build:
#   cmake -DVIEWER_DIR=<folder> -DOUTPUT=<file.cpp> -P EmbedViewerFiles.cmake

if(NOT VIEWER_DIR OR NOT OUTPUT)
  message(FATAL_ERROR "EmbedViewerFiles: VIEWER_DIR and OUTPUT are required")
endif()

file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${VIEWER_DIR} ${VIEWER_DIR}/*)
list(SORT files)

set(types_html "text/html; charset=utf-8")
set(types_js "text/javascript; charset=utf-8")
set(types_mjs "text/javascript; charset=utf-8")
set(types_css "text/css; charset=utf-8")
set(types_svg "image/svg+xml")
set(types_png "image/png")
set(types_json "application/json; charset=utf-8")
set(types_txt "text/plain; charset=utf-8")

string(REPEAT "0x..," 16 sixteen)
set(arrays "")
set(rows "")
set(index 0)
foreach(name IN LISTS files)
  # Editors' leftovers and hidden files are no part of the page.
  get_filename_component(base ${name} NAME)
  if(base MATCHES "^\\." OR base MATCHES "~$")
    continue()
  endif()
  get_filename_component(extension ${name} LAST_EXT)
  string(TOLOWER "${extension}" extension)
  string(REPLACE "." "" extension "${extension}")
  if(DEFINED types_${extension})
    set(type "${types_${extension}}")
  else()
    message(FATAL_ERROR "EmbedViewerFiles: ${name} has no known content type; add its extension here")
  endif()
  if(name MATCHES "[\"\\\\]")
    message(FATAL_ERROR "EmbedViewerFiles: ${name} cannot be named in C++ as it is")
  endif()

  file(READ ${VIEWER_DIR}/${name} hex HEX)
  file(SHA256 ${VIEWER_DIR}/${name} hash)
  string(SUBSTRING "${hash}" 0 20 tag)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  # Sixteen bytes a line keeps the generated source readable and its lines short.
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(REGEX REPLACE "(${sixteen})" "\\1\n    " bytes "${bytes}")
  # A trailing zero that is not counted in the size: an empty file still makes an array.
  string(APPEND arrays "// ${name}\nconst unsigned char file${index}[] = {\n    ${bytes}0x00};\n\n")
  string(APPEND rows "    {\"${name}\", file${index}, ${size}u, \"${type}\", \"\\\"${tag}\\\"\"},\n")
  math(EXPR index "${index} + 1")
endforeach()

if(index EQUAL 0)
  set(rows "    {nullptr, nullptr, 0u, nullptr, nullptr},\n")
endif()

set(text "// Generated at build time by cmake/EmbedViewerFiles.cmake from tov/utils/debugger/viewer/: do not edit.

#include <tov/utils/debugger/impl/ViewerFiles.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

${arrays}} // namespace

extern const ViewerFile viewerFileTable[] = {
${rows}};
extern const unsigned int viewerFileCount = ${index}u;

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
")

# Written every time the script runs (a file of the folder changed): an output left older than its
# inputs would make every later build run the script again.
file(WRITE ${OUTPUT} "${text}")
