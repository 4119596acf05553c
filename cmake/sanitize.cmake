# DATABASE_SANITIZE=ON builds everything with AddressSanitizer and
# UndefinedBehaviorSanitizer, and adds the fuzz targets under fuzz/: the same
# instrumented build serves the test suite and the fuzzers. Clang only, since
# libFuzzer comes with it.
if(NOT DATABASE_SANITIZE)
    return()
endif()

if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "DATABASE_SANITIZE needs clang: configure with -DCMAKE_CXX_COMPILER=clang++")
endif()

# Built as a unity build unless told otherwise: the instrumented compiler is
# slow, and fewer, larger translation units cost a fraction of the time.
if(NOT DEFINED CMAKE_UNITY_BUILD)
    set(CMAKE_UNITY_BUILD ON)
endif()

# -O1 with line tables: quick to compile, fast enough to fuzz, and stack
# traces with lines. Build type Debug keeps Qt's and our assertions on.
add_compile_options(-O1 -gline-tables-only)

# Undefined behaviour stops the program like a memory error does, so that a
# test or a fuzzer can't pass over it. Coverage instrumentation for libFuzzer
# goes into every object file; only the fuzz targets link its main.
set(DATABASE_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_compile_options(${DATABASE_SANITIZE_FLAGS} -fsanitize=fuzzer-no-link)
add_link_options(-fsanitize=address,undefined)
