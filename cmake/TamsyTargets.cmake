# How every target of ours is built: strict warnings as errors, the chosen sanitizers, one library a
# floor of the house. A floor links only what lies below it, so an include that points up does not
# build.

set(TAMSY_WARNINGS
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough -Werror)

add_library(tamsy_options INTERFACE)
target_compile_options(tamsy_options INTERFACE ${TAMSY_WARNINGS})
target_compile_definitions(tamsy_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER)

if(TAMSY_SANITIZE)
    add_compile_options(-fsanitize=${TAMSY_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TAMSY_SANITIZE})
    # GCC's flow analysis sees paths that only the instrumentation makes.
    target_compile_options(tamsy_options INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
if(TAMSY_FUZZ)
    # Every line of ours reports to the fuzzer; only its targets bring it along.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# tamsy_qml_sources(TARGET file…): adds hand-written sources to a QML module. The strict warnings hold
# for them and not for what Qt generates beside them.
function(tamsy_qml_sources target)
    set(options ${TAMSY_WARNINGS})
    if(TAMSY_SANITIZE)
        list(APPEND options $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    endif()
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "${options}")
    target_sources(${target} PRIVATE ${ARGN})
    target_compile_definitions(${target} PRIVATE
        $<TARGET_PROPERTY:tamsy_options,INTERFACE_COMPILE_DEFINITIONS>)
endfunction()

# tamsy_library(NAME SOURCES file… LINK target…): one floor, or one room of it.
function(tamsy_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE tamsy_options ${ARG_PRIVATE_LINK})
endfunction()

# Builds every test that is labelled "threads": those that are run under ThreadSanitizer too.
add_custom_target(tamsy_thread_tests)

# What others' libraries keep until the process ends is no leak of ours.
set(TAMSY_LEAKS "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")

# tamsy_test(NAME SOURCES file… LINK target… [TIMEOUT seconds] [LABELS label…] [DISPLAY | PROFILE]): one
# GoogleTest program, one CTest entry a program. With PROFILE it runs on a profile that is thrown away,
# with a session bus of its own; with DISPLAY on such a one and on a virtual display with a window
# manager, for what a program without a screen can't show. None reads or writes what is the user's own.
function(tamsy_test name)
    cmake_parse_arguments(ARG "DISPLAY;PROFILE" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE tamsy_options ${ARG_LINK} GTest::gmock GTest::gtest)
    if(TAMSY_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/UntoldClone.cpp")
    endif()
    set(platform offscreen)
    set(surroundings "")
    set(homes "XDG_DATA_HOME=${CMAKE_BINARY_DIR}/test-data;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test-configuration")
    if(ARG_PROFILE)
        set(surroundings "${PROJECT_SOURCE_DIR}/tools/with-profile")
    endif()
    if(ARG_DISPLAY)
        set(platform xcb)
        set(surroundings "${PROJECT_SOURCE_DIR}/tools/with-display" "${PROJECT_SOURCE_DIR}/tools/with-profile")
    endif()
    add_test(NAME ${name} COMMAND ${surroundings} $<TARGET_FILE:${name}>)
    if("threads" IN_LIST ARG_LABELS)
        add_dependencies(tamsy_thread_tests ${name})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=${platform};LC_ALL=C.UTF-8;${TAMSY_LEAKS};${homes}")
endfunction()
