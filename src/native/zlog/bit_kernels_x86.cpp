#include "native/zlog/bit_kernels.h"

#if defined(__x86_64__) || defined(__i386__)

#include <immintrin.h>

#define QV_AVX2 gnu::target("avx2")
#define QV_AVX2_BITS gnu::target("avx2,bmi,popcnt")
#define QV_AVX512 gnu::target("avx512f,avx512vpopcntdq")

namespace qv::native::zlog {
namespace {

constexpr std::size_t kVectorWords = 8;       // of 256 bits
constexpr std::size_t kWideVectorWords = 16;  // of 512 bits

// Registers are named one by one and kept few: a vector that had to be put aside would need a
// stack aligned to its size, which the 64-bit Windows calling convention does not give.
[[QV_AVX2, gnu::always_inline]] inline __m256i load(const std::uint32_t* words) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

[[QV_AVX2, gnu::always_inline]] inline void store(std::uint32_t* words, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(words), value);
}

struct And {
  static std::uint32_t word(std::uint32_t a, std::uint32_t b) { return a & b; }
  [[QV_AVX2, gnu::always_inline]] static inline __m256i vector(__m256i a, __m256i b) {
    return _mm256_and_si256(a, b);
  }
};

struct Or {
  static std::uint32_t word(std::uint32_t a, std::uint32_t b) { return a | b; }
  [[QV_AVX2, gnu::always_inline]] static inline __m256i vector(__m256i a, __m256i b) {
    return _mm256_or_si256(a, b);
  }
};

struct Xor {
  static std::uint32_t word(std::uint32_t a, std::uint32_t b) { return a ^ b; }
  [[QV_AVX2, gnu::always_inline]] static inline __m256i vector(__m256i a, __m256i b) {
    return _mm256_xor_si256(a, b);
  }
};

struct Exclude {
  static std::uint32_t word(std::uint32_t a, std::uint32_t b) { return a & ~b; }
  [[QV_AVX2, gnu::always_inline]] static inline __m256i vector(__m256i a, __m256i b) {
    return _mm256_andnot_si256(b, a);
  }
};

template <class Operation>
[[QV_AVX2]] void combine(std::uint32_t* target, const std::uint32_t* source, std::size_t words) {
  constexpr std::size_t kStep = 4 * kVectorWords;
  std::size_t i = 0;
  for (; i + kStep <= words; i += kStep) {
    const __m256i a = Operation::vector(load(target + i), load(source + i));
    const __m256i b = Operation::vector(load(target + i + 8), load(source + i + 8));
    const __m256i c = Operation::vector(load(target + i + 16), load(source + i + 16));
    const __m256i d = Operation::vector(load(target + i + 24), load(source + i + 24));
    store(target + i, a);
    store(target + i + 8, b);
    store(target + i + 16, c);
    store(target + i + 24, d);
  }
  for (; i < words; ++i) target[i] = Operation::word(target[i], source[i]);
}

[[QV_AVX2]] void invert(std::uint32_t* target, std::size_t words) {
  const __m256i ones = _mm256_set1_epi32(-1);
  std::size_t i = 0;
  for (; i + kVectorWords <= words; i += kVectorWords) {
    store(target + i, _mm256_xor_si256(load(target + i), ones));
  }
  for (; i < words; ++i) target[i] = ~target[i];
}

// A full adder on every bit position: high and low digit of a + b + c.
[[QV_AVX2, gnu::always_inline]] inline void add_bits(__m256i& high, __m256i& low, __m256i a,
                                                     __m256i b, __m256i c) {
  const __m256i differ = _mm256_xor_si256(a, b);
  high = _mm256_or_si256(_mm256_and_si256(a, b), _mm256_and_si256(differ, c));
  low = _mm256_xor_si256(differ, c);
}

// Set bits of each 64-bit lane, by a table of the sixteen half-bytes.
[[QV_AVX2, gnu::always_inline]] inline __m256i lane_counts(__m256i value) {
  const __m256i table = _mm256_setr_epi8(0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4,  //
                                         0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4);
  const __m256i half = _mm256_set1_epi8(0x0F);
  const __m256i low = _mm256_shuffle_epi8(table, _mm256_and_si256(value, half));
  const __m256i high =
      _mm256_shuffle_epi8(table, _mm256_and_si256(_mm256_srli_epi16(value, 4), half));
  return _mm256_sad_epu8(_mm256_add_epi8(low, high), _mm256_setzero_si256());
}

// Harley and Seal's method: eight vectors go through a tree of full adders, so that only the
// eights need counting; ones, twos and fours stay in the tree until the end.
// Source: Mula, Kurz, Lemire, "Faster Population Counts Using AVX2 Instructions" (2016).
[[QV_AVX2]] std::uint64_t count(const std::uint32_t* source, std::size_t words) {
  constexpr std::size_t kStep = 8 * kVectorWords;
  __m256i eights_total = _mm256_setzero_si256();
  __m256i ones = _mm256_setzero_si256();
  __m256i twos = _mm256_setzero_si256();
  __m256i fours = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + kStep <= words; i += kStep) {
    const std::uint32_t* at = source + i;
    __m256i twos_a;
    __m256i twos_b;
    __m256i fours_a;
    __m256i fours_b;
    __m256i eights;
    add_bits(twos_a, ones, ones, load(at), load(at + 8));
    add_bits(twos_b, ones, ones, load(at + 16), load(at + 24));
    add_bits(fours_a, twos, twos, twos_a, twos_b);
    add_bits(twos_a, ones, ones, load(at + 32), load(at + 40));
    add_bits(twos_b, ones, ones, load(at + 48), load(at + 56));
    add_bits(fours_b, twos, twos, twos_a, twos_b);
    add_bits(eights, fours, fours, fours_a, fours_b);
    eights_total = _mm256_add_epi64(eights_total, lane_counts(eights));
  }
  __m256i total = _mm256_slli_epi64(eights_total, 3);
  total = _mm256_add_epi64(total, _mm256_slli_epi64(lane_counts(fours), 2));
  total = _mm256_add_epi64(total, _mm256_slli_epi64(lane_counts(twos), 1));
  total = _mm256_add_epi64(total, lane_counts(ones));
  for (; i + kVectorWords <= words; i += kVectorWords) {
    total = _mm256_add_epi64(total, lane_counts(load(source + i)));
  }
  std::uint64_t lanes[4];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(lanes), total);
  return lanes[0] + lanes[1] + lanes[2] + lanes[3] +
         portable_kernels().count(source + i, words - i);
}

[[QV_AVX2]] std::size_t first_other(const std::uint32_t* source, std::size_t words,
                                    std::uint32_t value) {
  constexpr std::size_t kStep = 4 * kVectorWords;
  const __m256i same = _mm256_set1_epi32(static_cast<int>(value));
  std::size_t i = 0;
  for (; i + kStep <= words; i += kStep) {
    const __m256i ab = _mm256_or_si256(_mm256_xor_si256(load(source + i), same),
                                       _mm256_xor_si256(load(source + i + 8), same));
    const __m256i cd = _mm256_or_si256(_mm256_xor_si256(load(source + i + 16), same),
                                       _mm256_xor_si256(load(source + i + 24), same));
    const __m256i any = _mm256_or_si256(ab, cd);
    if (!_mm256_testz_si256(any, any)) break;
  }
  while (i < words && source[i] == value) ++i;
  return i;
}

[[QV_AVX2]] std::size_t last_other(const std::uint32_t* source, std::size_t words,
                                   std::uint32_t value) {
  constexpr std::size_t kStep = 4 * kVectorWords;
  const __m256i same = _mm256_set1_epi32(static_cast<int>(value));
  std::size_t end = words;
  for (; end >= kStep; end -= kStep) {
    const std::uint32_t* at = source + end - kStep;
    const __m256i ab =
        _mm256_or_si256(_mm256_xor_si256(load(at), same), _mm256_xor_si256(load(at + 8), same));
    const __m256i cd = _mm256_or_si256(_mm256_xor_si256(load(at + 16), same),
                                       _mm256_xor_si256(load(at + 24), same));
    const __m256i any = _mm256_or_si256(ab, cd);
    if (!_mm256_testz_si256(any, any)) break;
  }
  for (; end > 0; --end) {
    if (source[end - 1] != value) return end - 1;
  }
  return words;
}

// Puts the numbers of a word's bits and gives the end of the list. Where few bits are set, it
// writes a fixed number of entries without asking how many there are, and the next word overwrites
// those that were none: so nothing is left for the branch prediction to miss but words with more.
// The instruction itself counts the zeros, as it has an answer for a word of 0.
[[QV_AVX2_BITS, gnu::always_inline]] inline std::uint32_t* list_word(std::uint32_t word,
                                                                     std::uint32_t base,
                                                                     std::uint32_t* next) {
  static_assert(kListSlack == 2);
  std::uint32_t* const end = next + _mm_popcnt_u32(word);
  next[0] = base + _tzcnt_u32(word);
  word = _blsr_u32(word);
  next[1] = base + _tzcnt_u32(word);
  for (next += kListSlack; next < end; ++next) {
    word = _blsr_u32(word);
    *next = base + _tzcnt_u32(word);
  }
  return end;
}

[[QV_AVX2_BITS]] std::size_t list(const std::uint32_t* source, std::size_t words,
                                  std::uint32_t first, std::uint32_t* numbers) {
  std::uint32_t* next = numbers;
  std::size_t i = 0;
  for (; i + kVectorWords <= words; i += kVectorWords, first += kVectorWords * 32) {
    const __m256i vector = load(source + i);
    if (_mm256_testz_si256(vector, vector)) continue;
    for (std::uint32_t word = 0; word < kVectorWords; ++word) {
      next = list_word(source[i + word], first + word * 32, next);
    }
  }
  for (; i < words; ++i, first += 32) next = list_word(source[i], first, next);
  return static_cast<std::size_t>(next - numbers);
}

[[QV_AVX512]] std::uint64_t count_wide(const std::uint32_t* source, std::size_t words) {
  constexpr std::size_t kStep = 4 * kWideVectorWords;
  __m512i a = _mm512_setzero_si512();
  __m512i b = _mm512_setzero_si512();
  __m512i c = _mm512_setzero_si512();
  __m512i d = _mm512_setzero_si512();
  std::size_t i = 0;
  for (; i + kStep <= words; i += kStep) {
    const std::uint32_t* at = source + i;
    a = _mm512_add_epi64(a, _mm512_popcnt_epi64(_mm512_loadu_si512(at)));
    b = _mm512_add_epi64(b, _mm512_popcnt_epi64(_mm512_loadu_si512(at + 16)));
    c = _mm512_add_epi64(c, _mm512_popcnt_epi64(_mm512_loadu_si512(at + 32)));
    d = _mm512_add_epi64(d, _mm512_popcnt_epi64(_mm512_loadu_si512(at + 48)));
  }
  for (; i < words; i += kWideVectorWords) {
    const std::size_t left = words - i;
    const auto mask = static_cast<__mmask16>(left < kWideVectorWords ? (1U << left) - 1 : 0xFFFFU);
    a = _mm512_add_epi64(a, _mm512_popcnt_epi64(_mm512_maskz_loadu_epi32(mask, source + i)));
  }
  std::uint64_t lanes[8];
  _mm512_storeu_si512(lanes, _mm512_add_epi64(_mm512_add_epi64(a, b), _mm512_add_epi64(c, d)));
  std::uint64_t total = 0;
  for (const std::uint64_t lane : lanes) total += lane;
  return total;
}

constexpr Kernels kAvx2{combine<And>, combine<Or>, combine<Xor>, combine<Exclude>, invert, count,
                        first_other,  last_other,  list};

// Wider registers gain nothing where memory or the second cache sets the pace, so only counting,
// which has an instruction of its own, differs.
constexpr Kernels kAvx512{combine<And>,     combine<Or>, combine<Xor>,
                          combine<Exclude>, invert,      count_wide,
                          first_other,      last_other,  list};

}  // namespace

const Kernels* avx2_kernels() {
  const bool there = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                     __builtin_cpu_supports("popcnt");
  return there ? &kAvx2 : nullptr;
}

const Kernels* avx512_kernels() {
  const bool there = avx2_kernels() != nullptr && __builtin_cpu_supports("avx512f") &&
                     __builtin_cpu_supports("avx512vpopcntdq");
  return there ? &kAvx512 : nullptr;
}

}  // namespace qv::native::zlog

#else

namespace qv::native::zlog {

const Kernels* avx2_kernels() { return nullptr; }

const Kernels* avx512_kernels() { return nullptr; }

}  // namespace qv::native::zlog

#endif
