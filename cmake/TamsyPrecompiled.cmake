# Precompiled headers: parsing the headers that most sources include took two thirds of a build. Release
# builds don't use them, so a missing include is still found.

option(TAMSY_PRECOMPILE "Parse the most used headers once" OFF)

# _tamsy_precompiled(NAME LINK target… HEADERS header…)
function(_tamsy_precompiled name)
    cmake_parse_arguments(ARG "" "" "LINK;HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/precompiled/${name}.cpp" CONTENT "")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/precompiled/${name}.cpp")
    target_link_libraries(${name} PRIVATE tamsy_options ${ARG_LINK})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
endfunction()

if(TAMSY_PRECOMPILE)
    set(most
        <algorithm> <array> <atomic> <chrono> <functional> <memory> <mutex> <optional> <span> <string>
        <string_view> <thread> <vector>
        <QDir> <QFile> <QHash> <QObject> <QPointer> <QString> <QTimer> <QUrl> <QUuid> <QVariantMap>)
    _tamsy_precompiled(tamsy_precompiled LINK Qt6::Core HEADERS ${most})
    _tamsy_precompiled(tamsy_precompiled_views LINK Qt6::Quick
        HEADERS ${most} <QImage> <QQuickItem> <QQuickWindow> <QtQml/qjsprimitivevalue.h>
            <QtQml/qqmlprivate.h>)
    if(TAMSY_TESTS)
        find_package(GTest REQUIRED)
        _tamsy_precompiled(tamsy_precompiled_tests LINK Qt6::Core GTest::gmock GTest::gtest
            HEADERS ${most} <gmock/gmock.h> <gtest/gtest.h>)
    endif()
endif()

# tamsy_precompile(TARGET [_views | _tests]): lets TARGET use the precompiled headers of that kind.
function(tamsy_precompile target)
    if(TAMSY_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM tamsy_precompiled${ARGN})
    endif()
endfunction()
