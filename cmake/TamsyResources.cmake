# The pictures of the interface, compiled into the program: icons as SVG (":/icons/<name>.svg", tinted
# where they are shown), the cover for tracks without one and the application's icon as PNG, rendered
# here from their SVG sources. Qt's own SVG renderer would do, but would have to be built and started
# first, under every sanitizer anew.

find_program(TAMSY_RSVG_CONVERT rsvg-convert REQUIRED)

set(TAMSY_RESOURCE_SOURCES "${CMAKE_CURRENT_LIST_DIR}/../resources")
set(TAMSY_APPLICATION_ICON_SIZES 16 24 32 48 64 128 256 512)
# Twice the largest size at which the cover is shown.
set(TAMSY_FALLBACK_COVER_SIZE 800)

# Renders an SVG of resources/ as a square PNG and appends its path to the list LIST; the resource is
# called ALIAS.
function(_tamsy_render list svg size alias)
    cmake_path(GET svg STEM stem)
    set(output "${CMAKE_CURRENT_BINARY_DIR}/rendered/${stem}-${size}.png")
    add_custom_command(OUTPUT "${output}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/rendered"
        COMMAND "${TAMSY_RSVG_CONVERT}" --width=${size} --height=${size}
            "--output=${output}" "${TAMSY_RESOURCE_SOURCES}/${svg}"
        DEPENDS "${TAMSY_RESOURCE_SOURCES}/${svg}"
        COMMENT "Rendering ${svg} at ${size}" VERBATIM)
    set_source_files_properties("${output}" PROPERTIES QT_RESOURCE_ALIAS "${alias}")
    set(${list} ${${list}} "${output}" PARENT_SCOPE)
endfunction()

# tamsy_add_resources(TARGET): puts all pictures into TARGET. A static library hands them on to
# whatever links it, initialised.
function(tamsy_add_resources target)
    file(GLOB icons CONFIGURE_DEPENDS "${TAMSY_RESOURCE_SOURCES}/icons/*.svg")
    qt_add_resources(${target} "tamsy_icons"
        PREFIX "/icons" BASE "${TAMSY_RESOURCE_SOURCES}/icons" FILES ${icons})

    set(pictures "")
    _tamsy_render(pictures FallbackCover.svg ${TAMSY_FALLBACK_COVER_SIZE} "FallbackCover.png")
    foreach(size IN LISTS TAMSY_APPLICATION_ICON_SIZES)
        _tamsy_render(pictures application-icon.svg ${size} "application-icon-${size}.png")
    endforeach()
    qt_add_resources(${target} "tamsy_pictures" PREFIX "/" FILES ${pictures})

    # The same picture under its second name: the cover is looked up by either.
    set(second "${CMAKE_CURRENT_BINARY_DIR}/rendered/second-name/FallbackCover.png")
    add_custom_command(OUTPUT "${second}"
        COMMAND "${CMAKE_COMMAND}" -E copy
            "${CMAKE_CURRENT_BINARY_DIR}/rendered/FallbackCover-${TAMSY_FALLBACK_COVER_SIZE}.png" "${second}"
        DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/rendered/FallbackCover-${TAMSY_FALLBACK_COVER_SIZE}.png"
        VERBATIM)
    set_source_files_properties("${second}" PROPERTIES QT_RESOURCE_ALIAS "封面.png")
    qt_add_resources(${target} "tamsy_pictures_by_second_name" PREFIX "/" FILES "${second}")
endfunction()

# tamsy_install_icons(): puts the application's icon where the desktop's icon theme looks for it, in the
# sizes that were rendered and as it was drawn.
function(tamsy_install_icons)
    set(theme "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
    foreach(size IN LISTS TAMSY_APPLICATION_ICON_SIZES)
        install(FILES "${PROJECT_BINARY_DIR}/src/Views/Controls/rendered/application-icon-${size}.png"
            DESTINATION "${theme}/${size}x${size}/apps" RENAME tamsy-music.png)
    endforeach()
    install(FILES "${TAMSY_RESOURCE_SOURCES}/application-icon.svg"
        DESTINATION "${theme}/scalable/apps" RENAME tamsy-music.svg)
endfunction()
