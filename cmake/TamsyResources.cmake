# Pictures compiled into the program: icons as SVG (":/icons/<name>.svg", tinted at run time), the
# fallback cover and the application icon as PNG, rendered from their SVG sources. A tool of ours with
# Qt's SVG renderer would have to be built first, again for each sanitizer.

find_program(TAMSY_RSVG_CONVERT rsvg-convert REQUIRED)

set(TAMSY_RESOURCE_SOURCES "${CMAKE_CURRENT_LIST_DIR}/../resources")
set(TAMSY_APPLICATION_ICON_SIZES 16 24 32 48 64 128 256 512)
# Twice the max size at which the cover is shown.
set(TAMSY_FALLBACK_COVER_SIZE 800)

# Renders an SVG in resources/ as a square PNG, the resource ALIAS, and appends its path to LIST.
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

# tamsy_add_resources(TARGET): adds all pictures to TARGET. Programs that link a static library get
# them initialised.
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

    # The same picture under its second name.
    set(second "${CMAKE_CURRENT_BINARY_DIR}/rendered/second-name/FallbackCover.png")
    add_custom_command(OUTPUT "${second}"
        COMMAND "${CMAKE_COMMAND}" -E copy
            "${CMAKE_CURRENT_BINARY_DIR}/rendered/FallbackCover-${TAMSY_FALLBACK_COVER_SIZE}.png" "${second}"
        DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/rendered/FallbackCover-${TAMSY_FALLBACK_COVER_SIZE}.png"
        VERBATIM)
    set_source_files_properties("${second}" PROPERTIES QT_RESOURCE_ALIAS "封面.png")
    qt_add_resources(${target} "tamsy_pictures_by_second_name" PREFIX "/" FILES "${second}")
endfunction()

# tamsy_install_icons(): installs the application icon into the icon theme, rendered and as SVG.
function(tamsy_install_icons)
    set(theme "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
    foreach(size IN LISTS TAMSY_APPLICATION_ICON_SIZES)
        install(FILES "${PROJECT_BINARY_DIR}/src/Views/Controls/rendered/application-icon-${size}.png"
            DESTINATION "${theme}/${size}x${size}/apps" RENAME tamsy-music.png)
    endforeach()
    install(FILES "${TAMSY_RESOURCE_SOURCES}/application-icon.svg"
        DESTINATION "${theme}/scalable/apps" RENAME tamsy-music.svg)
endfunction()
