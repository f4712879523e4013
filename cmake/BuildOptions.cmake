# Compiler and linker settings that hold for every target of this tree.

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)

# What is built does not depend on where that is done: names of source files are taken from here,
# libraries are looked for from where the program lies, and members of archives are all of one time
# and owner. scripts/reproducible proves it.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(
        "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${PROJECT_BINARY_DIR}/=")
endif()
set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcD <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "<CMAKE_RANLIB> -D <TARGET>")

if(PROJECT_IS_TOP_LEVEL)
    # The build folder is laid out like an installation.
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
    set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
endif()

# Shared libraries must name all that they need. Sanitizers of some compilers leave their run-time
# symbols to the executable, so their builds are not held to it.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(CMAKE_SHARED_LINKER_FLAGS "${CMAKE_SHARED_LINKER_FLAGS} -Wl,--no-undefined")
endif()
