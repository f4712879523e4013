# What tests and fuzz targets share: the fake host and its kin in tests/support. All objects are
# linked, so that a stand-in for time() or hkPrintf() that lives there always takes effect.

file(GLOB vpath_test_support_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.cpp)

add_library(vpath_test_support OBJECT ${vpath_test_support_sources})
target_include_directories(vpath_test_support
    PUBLIC
        ${PROJECT_SOURCE_DIR}/tests
        ${PROJECT_SOURCE_DIR}/src
        ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(vpath_test_support PUBLIC GTest::gtest hostkit)
