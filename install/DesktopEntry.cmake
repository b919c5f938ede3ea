# Installs the program's entry in the desktop's menu. Below /usr the desktop finds the program by its name; the folder
# of a user's own need not be where it looks.
if(CMAKE_INSTALL_PREFIX MATCHES "^/usr(/|$)")
  set(exec velmora)
else()
  string(REPLACE "%" "%%" program "${CMAKE_INSTALL_PREFIX}/bin/velmora")
  set(exec "\"${program}\"")
endif()
configure_file(${source}/velmora.desktop.in ${binary}/${VELMORA_ID}.desktop @ONLY)
file(INSTALL ${binary}/${VELMORA_ID}.desktop DESTINATION ${CMAKE_INSTALL_PREFIX}/share/applications)
