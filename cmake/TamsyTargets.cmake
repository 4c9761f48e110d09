# How all targets are built: strict warnings as errors, the chosen sanitizers, one or more libraries per
# room.

set(TAMSY_WARNINGS
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough -Werror)

# GCC's flow analysis is reliable only in optimised builds without sanitizers.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    list(APPEND TAMSY_WARNINGS -Wno-maybe-uninitialized)
endif()

add_library(tamsy_options INTERFACE)
target_compile_options(tamsy_options INTERFACE ${TAMSY_WARNINGS})
target_compile_definitions(tamsy_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER)

if(TAMSY_SANITIZE)
    add_compile_options(-fsanitize=${TAMSY_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TAMSY_SANITIZE})
endif()
if(TAMSY_FUZZ)
    # All code is instrumented for the fuzzer, which only its targets link.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# tamsy_qml_sources(TARGET file…): adds sources to a QML module. The strict warnings apply to them, but
# not to the sources that Qt generates.
function(tamsy_qml_sources target)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "${TAMSY_WARNINGS}")
    target_sources(${target} PRIVATE ${ARGN})
    target_compile_definitions(${target} PRIVATE
        $<TARGET_PROPERTY:tamsy_options,INTERFACE_COMPILE_DEFINITIONS>)
    tamsy_precompile(${target} _views)
endfunction()

# tamsy_library(NAME [OWN_HEADERS] SOURCES file… LINK target…): a room, or a part of one. OWN_HEADERS
# turns precompiled headers off, for libraries without Qt or with other options.
function(tamsy_library name)
    cmake_parse_arguments(ARG "OWN_HEADERS" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE tamsy_options ${ARG_PRIVATE_LINK})
    if(NOT ARG_OWN_HEADERS)
        tamsy_precompile(${name})
    endif()
endfunction()

# tamsy_source_options(option… SOURCES file…): options for some sources of a target, which then can't use
# precompiled headers: their options must be the same.
function(tamsy_source_options)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    set_source_files_properties(${ARG_SOURCES} PROPERTIES
        COMPILE_OPTIONS "${ARG_UNPARSED_ARGUMENTS}" SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# All tests with the label "threads", which also run under ThreadSanitizer.
add_custom_target(tamsy_thread_tests)
# All tests with the label "unit".
add_custom_target(tamsy_unit_tests)

# tamsy_test(NAME SOURCES file… LINK target… [TIMEOUT seconds] [LABELS label…] [FIXTURES fixture…]
#            [FILTER pattern] [DISPLAY | PROFILE | SOUND_SERVER]): one GoogleTest program.
#
# One label says what it needs: "unit" nothing, "sound" devices that run in real time, "window" windows,
# "desktop" a session bus; without one of them it is a unit test. Each case of a unit test is a CTest
# test. Other programs are one test each, so that their cases share a server.
#
# PROFILE runs it with a temporary profile and session bus, DISPLAY also with a virtual display and a
# window manager, SOUND_SERVER with a private sound server. Each implies its label.
function(tamsy_test name)
    cmake_parse_arguments(ARG "DISPLAY;PROFILE;SOUND_SERVER" "TIMEOUT;FILTER"
        "SOURCES;LINK;LABELS;FIXTURES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name}
        PRIVATE tamsy_options tamsy_surroundings ${ARG_LINK} GTest::gmock GTest::gtest)
    tamsy_precompile(${name} _tests)
    # Fixtures that all builds of this tree share.
    target_compile_definitions(${name} PRIVATE
        TAMSY_TOOLS="${PROJECT_SOURCE_DIR}/tools"
        TAMSY_TEST_AUDIO="${PROJECT_SOURCE_DIR}/build/test-audio"
        TAMSY_FOREIGN_AUDIO="${PROJECT_SOURCE_DIR}/build/foreign-audio")
    if(TAMSY_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/UntoldClone.cpp")
    endif()
    if("threads" IN_LIST ARG_LABELS)
        add_dependencies(tamsy_thread_tests ${name})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()

    set(surroundings "")
    if(ARG_DISPLAY)
        list(APPEND ARG_LABELS window)
        set(surroundings "${PROJECT_SOURCE_DIR}/tools/with-display" "${PROJECT_SOURCE_DIR}/tools/with-profile")
    elseif(ARG_PROFILE)
        list(APPEND ARG_LABELS desktop)
        set(surroundings "${PROJECT_SOURCE_DIR}/tools/with-profile")
    elseif(ARG_SOUND_SERVER)
        list(APPEND ARG_LABELS sound)
        set(surroundings "${PROJECT_SOURCE_DIR}/tools/with-sound-server")
    endif()
    set(filter "")
    if(ARG_FILTER)
        set(filter "--gtest_filter=${ARG_FILTER}")
    endif()
    if(NOT "${ARG_LABELS}" MATCHES "sound|window|desktop")
        add_dependencies(tamsy_unit_tests ${name})
        list(APPEND ARG_LABELS unit)
        gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 30
            TEST_FILTER "${ARG_FILTER}" PROPERTIES TIMEOUT ${ARG_TIMEOUT})
        # Lists don't survive the discovery, which stores the cases' names in a variable.
        set(properties "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
        file(WRITE "${properties}" "if(${name}_TESTS)
    set_tests_properties(\${${name}_TESTS} PROPERTIES LABELS \"${ARG_LABELS}\"
        FIXTURES_REQUIRED \"${ARG_FIXTURES}\")
endif()
")
        set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${properties}")
        return()
    endif()
    add_test(NAME ${name} COMMAND ${surroundings} $<TARGET_FILE:${name}> ${filter})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
        FIXTURES_REQUIRED "${ARG_FIXTURES}")
endfunction()

# tamsy_sound_server_test(PROGRAM [FILTER pattern]): runs a test program again with a sound server.
function(tamsy_sound_server_test program)
    cmake_parse_arguments(ARG "" "FILTER" "" ${ARGN})
    set(name "${program}_with_sound_server")
    add_test(NAME ${name} COMMAND "${PROJECT_SOURCE_DIR}/tools/with-sound-server" $<TARGET_FILE:${program}>
        "--gtest_filter=${ARG_FILTER}")
    set_tests_properties(${name} PROPERTIES TIMEOUT 180 LABELS sound FIXTURES_REQUIRED test_audio
        ENVIRONMENT SDL_AUDIODRIVER=pulseaudio)
endfunction()
