include(GNUInstallDirs)

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
# Modules lie in a folder beside the libraries, in the build tree as in an installed one.
set(KESTO_MODULE_FOLDER KestoThumbnailer)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(KESTO_CCACHE ccache)
if(KESTO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # A user without a home folder to write to has no cache either, and ccache then compiles nothing.
    execute_process(COMMAND ${KESTO_CCACHE} ${CMAKE_CXX_COMPILER}
            -x c++ -c /dev/null -o ${PROJECT_BINARY_DIR}/CMakeFiles/ccache.o
        RESULT_VARIABLE ccache_status OUTPUT_QUIET ERROR_QUIET)
    if(ccache_status EQUAL 0)
        # The header that tests share is compiled beforehand, which ccache wants to be told.
        set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros ${KESTO_CCACHE})
    else()
        message(STATUS "ccache does not work here; building without it")
    endif()
endif()

# What every target of this project is compiled with; nothing of it reaches other projects.
function(kesto_compile target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor)
    if(KESTO_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
        target_compile_options(${target} PRIVATE -Werror=thread-safety -Wthread-safety-beta)
    endif()
    if(KESTO_CHECK_LOCK_ORDER)
        target_compile_definitions(${target} PRIVATE KESTO_CHECK_LOCK_ORDER)
    endif()
    if(KESTO_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    elseif(KESTO_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${KESTO_SANITIZE} -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${KESTO_SANITIZE})
    endif()
endfunction()

add_library(kesto_platform INTERFACE)
target_include_directories(kesto_platform INTERFACE ${PROJECT_SOURCE_DIR}/src)

# kesto_library(<name> SOURCES ... [MAY_USE <folder or library>...] [LINKS <target>...])
# One folder of code as an object library `kesto_<name>`. MAY_USE names what its includes may name, and is
# linked where it is a library of ours; LINKS names third-party targets.
function(kesto_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;MAY_USE;LINKS")
    set(target kesto_${name})
    add_library(${target} OBJECT ${arg_SOURCES})
    kesto_compile(${target})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src ${KESTO_INCLUDE_ROOT})
    target_link_libraries(${target} PUBLIC Threads::Threads ${arg_LINKS})
    foreach(used IN LISTS arg_MAY_USE)
        target_link_libraries(${target} PUBLIC kesto_${used})
    endforeach()
    kesto_record_wall(${arg_MAY_USE})
endfunction()

# Undefined symbols fail at the link, except under clang's sanitizers, whose runtime only the program has.
function(kesto_link_strictly target)
    target_link_options(${target} PRIVATE -Wl,--as-needed)
    if(NOT KESTO_FUZZ)
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()

# kesto_shared_library(<Name> FROM <name of kesto_library>... [LINKS <target>...])
# An installed shared library of whole object libraries.
function(kesto_shared_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FROM;LINKS")
    add_library(${name} SHARED)
    add_library(KestoThumbnailer::${name} ALIAS ${name})
    kesto_compile(${name})
    foreach(part IN LISTS arg_FROM)
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:kesto_${part}>)
        target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:kesto_${part}>)
    endforeach()
    target_include_directories(${name} INTERFACE
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${name} PUBLIC ${arg_LINKS})
    if(KESTO_CHECK_LOCK_ORDER)
        target_compile_definitions(${name} INTERFACE KESTO_CHECK_LOCK_ORDER) # it changes the size of locks
    endif()
    kesto_link_strictly(${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH $ORIGIN)
    set_property(GLOBAL APPEND PROPERTY KESTO_SHARED_LIBRARIES ${name})
endfunction()

# kesto_module(<name> SOURCES ... [MAY_USE ...] [LINKS ...])
# A module `<name>.so`, opened on first need by the library that owns its folder.
function(kesto_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;MAY_USE;LINKS")
    add_library(${name} MODULE ${arg_SOURCES})
    kesto_compile(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${KESTO_INCLUDE_ROOT})
    target_link_libraries(${name} PRIVATE ${arg_LINKS})
    foreach(used IN LISTS arg_MAY_USE)
        target_link_libraries(${name} PRIVATE kesto_${used})
    endforeach()
    kesto_link_strictly(${name})
    set_target_properties(${name} PROPERTIES
        PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${KESTO_MODULE_FOLDER}
        INSTALL_RPATH $ORIGIN/..)
    install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/${KESTO_MODULE_FOLDER})
    kesto_record_wall(${arg_MAY_USE})
endfunction()

# What test code is compiled with. It runs once for each time it is built: optimising it, or watching it for
# undefined behaviour, costs more than the run.
function(kesto_compile_test target)
    kesto_compile(${target})
    target_compile_options(${target} PRIVATE -O0)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(${target} PRIVATE -fpch-preprocess) # for ccache
    endif()
    if(KESTO_SANITIZE MATCHES undefined)
        target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
    endif()
endfunction()

# kesto_tests(<name> SOURCES ... LINKS <target>...): one test program `<name>_test`, its cases known to CTest.
function(kesto_tests name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    set(target ${name}_test)
    add_executable(${target} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/ForeignFindings.cpp)
    kesto_compile_test(${target})
    target_precompile_headers(${target} REUSE_FROM kesto_test_headers)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest_main ${arg_LINKS})
    include(GoogleTest)
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
endfunction()

# kesto_bench(<name> SOURCES ... LINKS <target>...): one program of measurements, `<name>_bench`.
function(kesto_bench name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    set(target ${name}_bench)
    add_executable(${target} ${arg_SOURCES})
    kesto_compile(${target})
    target_link_libraries(${target} PRIVATE benchmark::benchmark ${arg_LINKS})
endfunction()

# The wall of the calling folder: what its files may include besides their own folder and `platform`.
function(kesto_record_wall)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    list(JOIN ARGN " " allowed)
    set_property(GLOBAL APPEND_STRING PROPERTY KESTO_WALLS "${folder}: ${allowed}\n")
endfunction()

function(kesto_write_walls)
    get_property(walls GLOBAL PROPERTY KESTO_WALLS)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/walls.txt CONTENT "${walls}" @ONLY)
endfunction()
