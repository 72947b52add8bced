# How everything of ours is compiled, and the functions by which folders declare what they hold.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# One folder for what is deployed, laid out as it is deployed: programs find their libraries by relative paths.
set(TORVO_BIN_DIR ${CMAKE_BINARY_DIR}/editor/bin)
set(TORVO_LIB_DIR ${CMAKE_BINARY_DIR}/editor/lib)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(TORVO_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")
if(TORVO_SANITIZE)
    add_compile_options(-fsanitize=${TORVO_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TORVO_SANITIZE})
endif()

# Warnings are errors on our own code; what we depend on is included as system headers.
function(torvo_own_code target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_DISABLE_DEPRECATED_BEFORE=0x050F00 QT_NO_FOREACH)
endfunction()

# torvo_library(NAME SOURCES... [LINK libraries...]): a static library of our own.
function(torvo_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    torvo_own_code(${name})
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
endfunction()

# torvo_test(NAME PART SOURCES... LINK...): one Qt Test program, run by ctest under the label PART (unit, qml,
# system). Each lies in a folder of its own, since many of the classes keep files beside the program.
# ENV adds environment settings, TIMEOUT seconds (default 120). X gives it an X server of its own, WM a window
# manager on it too; without either it runs offscreen.
function(torvo_test name part)
    cmake_parse_arguments(ARG "X;WM" "TIMEOUT" "SOURCES;LINK;ENV" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set(launcher "")
    set(platform offscreen)
    if(ARG_X OR ARG_WM)
        set(launcher ${CMAKE_SOURCE_DIR}/tests/with-x)
        set(platform xcb)
    endif()
    if(ARG_WM)
        list(APPEND launcher --wm)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    torvo_own_code(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} Qt5::Test)
    add_dependencies(${part}-tests ${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/${part}/${name})
    set_property(TARGET ${name} PROPERTY TORVO_TEST_COMMAND ${launcher} $<TARGET_FILE:${name}>)
    add_test(NAME ${part}.${name} COMMAND ${launcher} $<TARGET_FILE:${name}>
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests/${part}/${name})
    set_tests_properties(${part}.${name} PROPERTIES LABELS ${part} TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=${platform};QT_QUICK_BACKEND=software;LC_ALL=C.UTF-8;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp;${ARG_ENV}")
endfunction()

# torvo_bench(NAME SOURCES... LINK...): the program bench_NAME, which ./bench builds and runs.
function(torvo_bench name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(bench_${name} ${ARG_SOURCES})
    torvo_own_code(bench_${name})
    target_include_directories(bench_${name} PRIVATE ${CMAKE_SOURCE_DIR}/benchmarks)
    target_link_libraries(bench_${name} PRIVATE ${ARG_LINK})
    set_target_properties(bench_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/benchmarks)
endfunction()

# torvo_test_again(NAME PART SUFFIX ENV...): the same program once more, with other settings of the environment.
function(torvo_test_again name part suffix)
    get_test_property(${part}.${name} ENVIRONMENT environment)
    get_property(command TARGET ${name} PROPERTY TORVO_TEST_COMMAND)
    add_test(NAME ${part}.${name}_${suffix} COMMAND ${command}
        WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests/${part}/${name})
    # Both keep their files in one folder.
    set_tests_properties(${part}.${name} ${part}.${name}_${suffix} PROPERTIES RESOURCE_LOCK ${name})
    set_tests_properties(${part}.${name}_${suffix} PROPERTIES LABELS ${part} TIMEOUT 120
        ENVIRONMENT "${environment};${ARGN}")
endfunction()
