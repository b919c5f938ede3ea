# The Debian package, for all users of a system: cpack in a finished release build. The symbols of its programs are a
# package of their own beside it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <contact@velmora.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "web browser that records web forms and fills them in again")
set(CPACK_PACKAGE_DESCRIPTION [[
Velmora records what you send with a form, keeps the records as small files
of your own, and plays them back: at your next visit it finds the form, fills
it in and, if you like, sends it.]])
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};velmora;system;/")
# The folder is /usr while the files are put elsewhere, so that what is installed knows where it is going to lie.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)

# What the program uses beyond its libraries stands in the list of packages.
file(STRINGS ${CMAKE_SOURCE_DIR}/packages.txt lines REGEX "^[#a-z]")
set(section)
set(used)
foreach(line IN LISTS lines)
  if(line MATCHES "^# ([a-z]+):")
    set(section ${CMAKE_MATCH_1})
  elseif(section STREQUAL run)
    list(APPEND used ${line})
  endif()
endforeach()
list(JOIN used ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
include(CPack)
