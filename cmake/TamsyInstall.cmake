# Installs what comes with the program and its module: desktop file, AppStream data, icons, documents.
# Also configures the Debian package that cpack builds ("make deb").

include(GNUInstallDirs)
include(TamsyResources)

install(FILES packaging/tamsy-music.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES packaging/org.tamsy.music.metainfo.xml DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
tamsy_install_icons()

# tamsy_install_compressed(FILE NAME DESTINATION): installs a document as Debian requires, compressed
# without a timestamp.
function(tamsy_install_compressed file name destination)
    set(output "${CMAKE_CURRENT_BINARY_DIR}/documents/${name}.gz")
    add_custom_command(OUTPUT "${output}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/documents"
        COMMAND gzip -9 -n -c "${CMAKE_CURRENT_SOURCE_DIR}/${file}" > "${output}"
        DEPENDS "${file}" VERBATIM)
    add_custom_target("tamsy_${name}" ALL DEPENDS "${output}")
    install(FILES "${output}" DESTINATION "${destination}")
endfunction()
set(documents "${CMAKE_INSTALL_DATADIR}/doc/tamsy-music")
tamsy_install_compressed(packaging/debian/changelog changelog.Debian "${documents}")
tamsy_install_compressed(packaging/tamsy-music.1 tamsy-music.1 "${CMAKE_INSTALL_DATADIR}/man/man1")
install(FILES packaging/debian/copyright DESTINATION "${documents}")

# The package's version and maintainer are in its changelog.
file(READ packaging/debian/changelog changelog)
if(NOT changelog MATCHES "^tamsy-music \\(${PROJECT_VERSION}-([0-9]+)\\).*\n -- ([^\n]+>)  ")
    message(FATAL_ERROR "packaging/debian/changelog doesn't begin with version ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_1}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CMAKE_MATCH_2}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/debian/changelog)

# The newest version, as software centres show it.
file(STRINGS packaging/org.tamsy.music.metainfo.xml newest REGEX "<release " LIMIT_COUNT 1)
if(NOT newest MATCHES "version=\"${PROJECT_VERSION}\"")
    message(FATAL_ERROR "packaging/org.tamsy.music.metainfo.xml doesn't begin with version ${PROJECT_VERSION}")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/org.tamsy.music.metainfo.xml)

# QML loads modules by name, so the dependency scanner doesn't see that they are needed.
execute_process(COMMAND tools/setup --names run WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}"
    OUTPUT_VARIABLE names OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ", " depends "${names}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/packages.txt tools/setup)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tamsy-music)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${depends}")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "quiet music player for your own files
Plays the music of the folders that you add to it: mp3, wav, flac, ogg, m4a,
aac, aiff and caf. Finds a track as you type and needs no network. Its
interface is Chinese.")
include(CPack)
