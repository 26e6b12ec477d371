# SPDX-License-Identifier: GPL-3.0-or-later
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
add_compile_definitions(QT_NO_KEYWORDS)  # "signals" and "slots" are words of ours too

find_program(CCACHE ccache)
if(CCACHE)
    # base_dir lets checkouts in different folders share the cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
        CCACHE_NOHASHDIR=1 ${CCACHE})
endif()

if(TESSALOOM_ASSERTIONS)
    string(REPLACE "-DNDEBUG" "" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
endif()

if(TESSALOOM_SANITIZE)
    add_compile_options(-fsanitize=${TESSALOOM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TESSALOOM_SANITIZE})
endif()
