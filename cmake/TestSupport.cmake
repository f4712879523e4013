# What tests, fuzz targets and benchmarks share: the fake host and its kin in tests/support.
#
# vpath_test_support          the objects, for programs that contain the library's own objects; all
#                             of them are linked, so that a stand-in for time() or hkPrintf() that
#                             lives there always takes effect
# vpath_test_support_archive  the same as an archive, for programs that use libvpath.so: only what
#                             they refer to is linked, and that must not need library internals

file(GLOB vpath_test_support_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.cpp)
if(NOT vpath_test_support_sources)
    message(FATAL_ERROR "tests/support holds no sources")
endif()

add_library(vpath_test_support OBJECT ${vpath_test_support_sources})
target_include_directories(vpath_test_support
    PUBLIC
        ${PROJECT_SOURCE_DIR}/tests
        ${PROJECT_SOURCE_DIR}/src
        ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(vpath_test_support PUBLIC GTest::gtest hostkit)

add_library(vpath_test_support_archive STATIC $<TARGET_OBJECTS:vpath_test_support>)
target_include_directories(vpath_test_support_archive INTERFACE
    $<TARGET_PROPERTY:vpath_test_support,INTERFACE_INCLUDE_DIRECTORIES>)
target_link_libraries(vpath_test_support_archive PUBLIC GTest::gtest hostkit)
