# Peer: the bit set of CRoaring. Debian 12's libroaring-dev is older than it, so it comes from the
# npm package "roaring" (2.7.0), whose one source file holds that library whole. Unpack the package
# and say where, as ./bench does:
#   npm pack roaring@2.7.0 && tar xzf roaring-2.7.0.tgz
#   cmake --preset native -DQVRT_ROARING_DIR=$PWD/package
set(QVRT_ROARING_DIR "" CACHE PATH "Folder of the unpacked npm package roaring")
set(peer_source ${QVRT_ROARING_DIR}/roaring-node.cpp)
if(QVRT_ROARING_DIR AND EXISTS ${peer_source})
  # The library is two stretches of the file, its headers and its sources; the rest binds it to
  # another language.
  set(peer_dir ${CMAKE_CURRENT_BINARY_DIR}/zlog_peer)
  file(READ ${peer_source} text)
  foreach(part header source)
    if(part STREQUAL header)
      string(FIND "${text}" "#line 1 \"submodules/CRoaring/include/roaring/roaring.h\"" from)
    else()
      string(FIND "${text}" "#line 1 \"submodules/CRoaring/src/isadetection.c\"" from)
    endif()
    string(SUBSTRING "${text}" ${from} -1 text)
    string(REGEX MATCH "#line [0-9]+ \"src/cpp/" end_marker "${text}")
    string(FIND "${text}" "${end_marker}" length)
    string(SUBSTRING "${text}" 0 ${length} ${part})
  endforeach()
  file(WRITE ${peer_dir}/peer_bitset.h "#pragma once\n${header}
#ifdef __cplusplus
extern \"C\"
#endif
size_t peer_sum_of_set(const bitset_t* set);\n")
  file(WRITE ${peer_dir}/peer_bitset.c "#include \"peer_bitset.h\"\n${source}
size_t peer_sum_of_set(const bitset_t* set) {
  size_t sum = 0;
  for (size_t bit = 0; bitset_next_set_bit(set, &bit); ++bit) sum += bit;
  return sum;
}\n")
  # Built for this machine, as its own build does: the bit set chooses nothing at run time.
  add_library(zlog_peer STATIC ${peer_dir}/peer_bitset.c)
  target_compile_options(zlog_peer PRIVATE -O3 -march=native -w)
  target_include_directories(zlog_peer SYSTEM PUBLIC ${peer_dir})
  add_executable(zlog_bench ${CMAKE_CURRENT_LIST_DIR}/zlog_bench.cpp)
  target_include_directories(zlog_bench PRIVATE ${CMAKE_SOURCE_DIR}/benchmarks)
  target_link_libraries(zlog_bench PRIVATE qv_native zlog_peer)
else()
  message(STATUS "zlog_bench: not built, QVRT_ROARING_DIR names no unpacked package roaring")
endif()
