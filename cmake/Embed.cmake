# velmora_embed(target name file...): packs files into a target as read-only bytes. Each is reached
# through the header "<name>.h" as velmora::<name>::Find("<file name>").
function(velmora_embed target name)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${name}.h)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/EmbedFiles.cmake)
  set(files)
  foreach(file ${ARGN})
    list(APPEND files ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  add_custom_command(
    OUTPUT ${output} ${header}
    COMMAND ${CMAKE_COMMAND} "-DFILES=${files}" -DOUTPUT=${output} -DHEADER=${header} -DNAME=${name} -P ${script}
    DEPENDS ${files} ${script}
    VERBATIM)
  target_sources(${target} PRIVATE ${output} ${header})
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
