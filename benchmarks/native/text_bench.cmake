# Byte and text conversions against plain loops, formatted printing and, for CRC-16, slicing.
add_executable(text_bench ${CMAKE_CURRENT_LIST_DIR}/text_bench.cpp)
target_include_directories(text_bench PRIVATE ${CMAKE_SOURCE_DIR}/benchmarks)
target_link_libraries(text_bench PRIVATE qv_native)
