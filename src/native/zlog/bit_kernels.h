#pragma once

#include <cstddef>
#include <cstdint>

namespace qv::native::zlog {

inline constexpr std::size_t kListSlack = 2;

// The inner loops over whole words, once for any processor and again for those with wider
// registers. All sets give the same results; words need no alignment beyond their own. A source
// may be the target itself.
struct Kernels {
  using Combine = void (*)(std::uint32_t* target, const std::uint32_t* source, std::size_t words);

  Combine and_with;
  Combine or_with;
  Combine xor_with;
  Combine exclude;
  void (*invert)(std::uint32_t* target, std::size_t words);
  std::uint64_t (*count)(const std::uint32_t* source, std::size_t words);
  // Index of the first (last) word that is not `value`; `words` when there is none.
  std::size_t (*first_other)(const std::uint32_t* source, std::size_t words, std::uint32_t value);
  std::size_t (*last_other)(const std::uint32_t* source, std::size_t words, std::uint32_t value);
  // Puts the numbers of the set bits, ascending, into `numbers`, and tells how many; bit 0 of the
  // first word has the number `first`. The list has room for kListSlack more than there are.
  std::size_t (*list)(const std::uint32_t* source, std::size_t words, std::uint32_t first,
                      std::uint32_t* numbers);
};

const Kernels& portable_kernels();

// Null on a processor without them.
const Kernels* avx2_kernels();
const Kernels* avx512_kernels();

// The fastest set that this processor has.
const Kernels& kernels();

}  // namespace qv::native::zlog
