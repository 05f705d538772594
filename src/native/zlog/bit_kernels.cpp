#include "native/zlog/bit_kernels.h"

#include <bit>
#include <functional>

namespace qv::native::zlog {
namespace {

struct WithoutBits {
  constexpr std::uint32_t operator()(std::uint32_t a, std::uint32_t b) const { return a & ~b; }
};

template <class Operation>
void combine(std::uint32_t* target, const std::uint32_t* source, std::size_t words) {
  for (std::size_t i = 0; i < words; ++i) target[i] = Operation{}(target[i], source[i]);
}

void invert(std::uint32_t* target, std::size_t words) {
  for (std::size_t i = 0; i < words; ++i) target[i] = ~target[i];
}

// Pairs, fours and eights are summed in place: unlike a table or a multiplication, shifts and sums
// are what a compiler turns into vector code for every processor.
constexpr std::uint32_t bits_in(std::uint32_t word) {
  word -= (word >> 1) & 0x55555555;
  word = (word & 0x33333333) + ((word >> 2) & 0x33333333);
  word = (word + (word >> 4)) & 0x0F0F0F0F;
  word += word >> 8;
  return (word + (word >> 16)) & 0x3F;
}

std::uint64_t count(const std::uint32_t* source, std::size_t words) {
  constexpr std::size_t kBlockWords = std::size_t{1} << 16;  // its sum fits 32 bits
  std::uint64_t total = 0;
  while (words > 0) {
    const std::size_t block = words < kBlockWords ? words : kBlockWords;
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < block; ++i) sum += bits_in(source[i]);
    total += sum;
    source += block;
    words -= block;
  }
  return total;
}

std::size_t first_other(const std::uint32_t* source, std::size_t words, std::uint32_t value) {
  std::size_t i = 0;
  while (i < words && source[i] == value) ++i;
  return i;
}

std::size_t last_other(const std::uint32_t* source, std::size_t words, std::uint32_t value) {
  for (std::size_t i = words; i > 0; --i) {
    if (source[i - 1] != value) return i - 1;
  }
  return words;
}

std::size_t list(const std::uint32_t* source, std::size_t words, std::uint32_t first,
                 std::uint32_t* numbers) {
  std::uint32_t* next = numbers;
  for (std::size_t i = 0; i < words; ++i, first += 32) {
    for (std::uint32_t word = source[i]; word != 0; word &= word - 1) {
      *next++ = first + static_cast<unsigned>(std::countr_zero(word));
    }
  }
  return static_cast<std::size_t>(next - numbers);
}

constexpr Kernels kPortable{combine<std::bit_and<>>,
                            combine<std::bit_or<>>,
                            combine<std::bit_xor<>>,
                            combine<WithoutBits>,
                            invert,
                            count,
                            first_other,
                            last_other,
                            list};

}  // namespace

const Kernels& portable_kernels() { return kPortable; }

const Kernels& kernels() {
  if (const Kernels* avx512 = avx512_kernels()) return *avx512;
  if (const Kernels* avx2 = avx2_kernels()) return *avx2;
  return kPortable;
}

}  // namespace qv::native::zlog
