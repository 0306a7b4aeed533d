# cmake -DOUTPUT=Library.cpp -DSCRIPTS=a.js,b.js -P embed.cmake
string(REPLACE "," ";" SCRIPTS "${SCRIPTS}")
set(entries "")
foreach(script IN LISTS SCRIPTS)
  file(READ "${script}" text)
  get_filename_component(name "${script}" NAME)
  string(APPEND entries "    {\"${name}\", R\"library(${text})library\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"script/Library.h\"

namespace headless::script {

std::span<const LibraryScript> library() {
    static constexpr LibraryScript scripts[] = {
${entries}    };
    return scripts;
}

}  // namespace headless::script
")
