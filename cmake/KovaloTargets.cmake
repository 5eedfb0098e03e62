# Common to all targets: warnings, hardening, sanitizers, precompiled headers, and the functions that
# declare libraries and tests.

# The same code model for libraries and programs, so that they can share the precompiled headers.
add_compile_options(-fPIC -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# Failed checks are logged with their source file: the same bytes wherever the checkout is.
add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}=../..)
add_compile_definitions(
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    $<$<NOT:$<CONFIG:Debug>>:QT_NO_DEBUG>)

# Debian's hardening flags (`DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags`); not for debug
# builds and the sanitizers, which have stricter checks of their own.
if(NOT KOVALO_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
    add_compile_definitions(_FORTIFY_SOURCE=2)
    add_link_options(-pie LINKER:-z,relro,-z,now)
    # Sanitizers, coverage and profiles report in exit handlers.
    if(NOT CMAKE_CXX_FLAGS MATCHES "sanitize|coverage|profile")
        set(KOVALO_SKIPS_EXIT_HANDLERS ON)
    endif()
endif()

if(KOVALO_SANITIZE)
    add_compile_options(-fsanitize=${KOVALO_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${KOVALO_SANITIZE})
    # GCC's flow analysis has false positives in the sanitizers' instrumentation.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# Test programs are compiled more often than they are run.
set(KOVALO_TEST_OPTIONS -O0)

if(KOVALO_PCH)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess) # lets ccache see that the precompiled headers changed
    endif()
    foreach(pch kov_pch kov_test_pch)
        add_library(${pch} OBJECT ${CMAKE_CURRENT_LIST_DIR}/pch.cpp)
        target_link_libraries(${pch} PRIVATE Qt6::Core)
        target_precompile_headers(${pch} PRIVATE
            <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QFile> <QHash> <QIODevice> <QList>
            <QMetaEnum> <QMetaObject> <QObject> <QPointer> <QSharedPointer> <QString> <QThread>
            <QTimer> <QUrl> <QVariant> <algorithm> <functional> <memory> <string> <utility>
            <vector>)
    endforeach()
    target_compile_options(kov_test_pch PRIVATE ${KOVALO_TEST_OPTIONS})
endif()

# kovalo_use_pch(TARGET [kov_test_pch])
function(kovalo_use_pch target)
    set(pch kov_pch ${ARGN})
    if(KOVALO_PCH)
        list(GET pch -1 pch)
        target_precompile_headers(${target} REUSE_FROM ${pch})
    endif()
endfunction()

# kovalo_library(NAME [PUBLIC_LIBS...]): a static library of the sources in the current folder and
# of the folders named after SUBDIRS. Its headers are visible to targets that link it.
function(kovalo_library name)
    cmake_parse_arguments(ARG "" "" "LIBS;SUBDIRS" ${ARGN})
    set(dirs ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(sub IN LISTS ARG_SUBDIRS)
        list(APPEND dirs ${CMAKE_CURRENT_SOURCE_DIR}/${sub})
    endforeach()
    set(patterns)
    foreach(dir IN LISTS dirs)
        list(APPEND patterns ${dir}/*.cpp ${dir}/*.h)
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${patterns})
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${dirs})
    target_link_libraries(${name} PUBLIC Qt6::Core ${ARG_LIBS})
    if(KOVALO_UNITY)
        # So helpers have names that are unique within their library.
        set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
    endif()
    kovalo_use_pch(${name})
endfunction()

# Lets the thread sanitizer see those of Qt's locks that it would miss.
function(kovalo_show_qt_locks target)
    if(NOT KOVALO_SANITIZE STREQUAL "thread")
        return()
    endif()
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/tsanqtlocks.cpp)
    foreach(symbol _ZN14QReadWriteLock11lockForReadEv _ZN14QReadWriteLock12lockForWriteEv
            _ZN14QReadWriteLock6unlockEv _ZN15QRecursiveMutex7tryLockEi
            _ZN15QRecursiveMutex6unlockEv _ZN7QThread4waitE14QDeadlineTimer
            _ZN7QThread21setTerminationEnabledEb)
        target_link_options(${target} PRIVATE LINKER:--wrap=${symbol})
    endforeach()
endfunction()

# kovalo_tests(LIBS...): every tst_*.cpp of the current folder is a test program of its own, run by
# ctest under its file name. RESOURCE_LOCK and labels are set by the folder where it needs them.
function(kovalo_tests)
    cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tst_*.cpp)
    # QProcess uses vfork(): until exec(), the child shares its memory, and the thread sanitizer then
    # mistakes the test itself for a forked child.
    set(tsan_options "die_after_fork=0:suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp")
    foreach(source IN LISTS sources)
        get_filename_component(name ${source} NAME_WE)
        add_executable(${name} ${source})
        target_link_libraries(${name} PRIVATE Qt6::Test ${ARG_LIBS})
        # With hardening, the C library requires that every result is used.
        target_compile_options(${name} PRIVATE -Wno-error=unused-result)
        target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support)
        target_compile_options(${name} PRIVATE ${KOVALO_TEST_OPTIONS})
        kovalo_use_pch(${name} kov_test_pch)
        kovalo_show_qt_locks(${name})
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS unit
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TSAN_OPTIONS=${tsan_options}")
    endforeach()
endfunction()
