# nhupdate_add_version_resource(TARGET FILE file DESCRIPTION text TYPE VFT_APP|VFT_DLL
#                               [MANIFEST file])
#
# Gives the executable or library a version resource with the project's version and, where there is
# one, its manifest.
function(nhupdate_add_version_resource target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FILE;DESCRIPTION;TYPE;MANIFEST" "")
  set(NHUPDATE_RC_FILE ${arg_FILE})
  set(NHUPDATE_RC_DESCRIPTION ${arg_DESCRIPTION})
  set(NHUPDATE_RC_TYPE ${arg_TYPE})
  set(NHUPDATE_RC_EXTRA "")
  if(arg_MANIFEST)
    cmake_path(GET arg_MANIFEST FILENAME manifest_name)
    # 24 is the type of a manifest, 1 its number in an executable.
    set(NHUPDATE_RC_EXTRA "1 24 \"${manifest_name}\"")
    cmake_path(GET arg_MANIFEST PARENT_PATH manifest_folder)
  endif()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${script} @ONLY)
  target_sources(${target} PRIVATE ${script})
  if(arg_MANIFEST)
    set_source_files_properties(${script} PROPERTIES
      INCLUDE_DIRECTORIES ${manifest_folder} OBJECT_DEPENDS ${arg_MANIFEST})
    if(MSVC)
      target_link_options(${target} PRIVATE /MANIFEST:NO)
    endif()
  endif()
endfunction()
