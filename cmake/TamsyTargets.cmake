# How every target of ours is built: strict warnings as errors, the chosen sanitizers, one library a
# floor of the house. A floor links only what lies below it, so an include that points up does not
# build.

add_library(tamsy_options INTERFACE)
target_compile_options(tamsy_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wnull-dereference -Wimplicit-fallthrough -Werror)
target_compile_definitions(tamsy_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER)

if(TAMSY_SANITIZE)
    add_compile_options(-fsanitize=${TAMSY_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TAMSY_SANITIZE})
    # GCC's flow analysis sees null paths that only the instrumentation makes.
    target_compile_options(tamsy_options INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()

# tamsy_library(NAME SOURCES file… LINK target…): one floor, or one room of it.
function(tamsy_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE tamsy_options ${ARG_PRIVATE_LINK})
endfunction()

# tamsy_test(NAME SOURCES file… LINK target… [TIMEOUT seconds]): one GoogleTest program, one CTest
# entry a program.
function(tamsy_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE tamsy_options ${ARG_LINK} GTest::gmock GTest::gtest)
    add_test(NAME ${name} COMMAND ${name})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()
