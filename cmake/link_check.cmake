# nhupdate_check_links(TARGET...)
#
# A static library may use what it doesn't name as its own dependency, as long as whatever is linked
# in the end brings it along. So each library is linked whole into a program of its own with nothing
# but what it names: one that reaches up fails to link.
function(nhupdate_check_links)
  set(source ${PROJECT_BINARY_DIR}/link_check.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
  foreach(library IN LISTS ARGN)
    add_executable(${library}_links_alone ${source})
    target_link_libraries(${library}_links_alone PRIVATE
      nhupdate_options $<LINK_LIBRARY:WHOLE_ARCHIVE,${library}>)
    if(MINGW)
      # Nobody debugs them, and their symbols would take as much room as the program.
      target_link_options(${library}_links_alone PRIVATE -s)
    endif()
    set_target_properties(${library}_links_alone PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/link_check)
  endforeach()
endfunction()
