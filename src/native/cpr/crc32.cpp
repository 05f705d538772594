#include "native/cpr/crc32.h"

#include <array>
#include <cstddef>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define QV_CRC32_BY_FOLDING
#endif

namespace qv::native::cpr {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::size_t kSlices = 16;

// The next power of x: bits are reflected, so the highest power is the lowest bit.
constexpr std::uint32_t times_x(std::uint32_t value) {
  return (value >> 1) ^ ((value & 1) != 0 ? kPolynomial : 0);
}

using SliceTable = std::array<std::array<std::uint32_t, 256>, kSlices>;

// tables[k][b] is what byte b leaves in the register when k further zero bytes have passed.
consteval SliceTable make_tables() {
  SliceTable tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = times_x(value);
    tables[0][byte] = value;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[slice - 1][byte];
      tables[slice][byte] = (before >> 8) ^ tables[0][before & 0xFF];
    }
  }
  return tables;
}

constexpr SliceTable kTables = make_tables();

}  // namespace

std::uint32_t crc32_update_by_tables(std::uint32_t register_value,
                                     std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = register_value;
  const std::uint8_t* at = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices) {
    std::uint32_t next =
        kTables[15][at[0] ^ (crc & 0xFF)] ^ kTables[14][at[1] ^ ((crc >> 8) & 0xFF)] ^
        kTables[13][at[2] ^ ((crc >> 16) & 0xFF)] ^ kTables[12][at[3] ^ (crc >> 24)];
    for (std::size_t i = 4; i < kSlices; ++i) next ^= kTables[15 - i][at[i]];
    crc = next;
  }
  for (; left > 0; --left, ++at) crc = (crc >> 8) ^ kTables[0][(crc ^ *at) & 0xFF];
  return crc;
}

#ifdef QV_CRC32_BY_FOLDING
namespace {

// Folding by carry-less multiplication, after Gopal and others, "Fast CRC Computation for Generic
// Polynomials Using PCLMULQDQ Instruction" (Intel, 2009): a register of 128 bits is multiplied
// forward over the bytes that follow it. Eight registers run side by side, to hide the
// multiplier's latency. What remains in the last one is 16 bytes with the same remainder as the
// whole text, and goes through the tables.
constexpr std::size_t kLaneBytes = 16;
constexpr std::size_t kLanes = 8;

// x to this power modulo the polynomial, bits reflected, one place higher as the product asks.
consteval long long power_of_x(unsigned exponent) {
  std::uint32_t value = 0x80000000;
  for (unsigned i = 0; i < exponent; ++i) value = times_x(value);
  return 2LL * value;
}

struct Powers {
  long long low;
  long long high;
};
consteval Powers powers_over(unsigned bytes) {
  return {power_of_x(bytes * 8 + 32), power_of_x(bytes * 8 - 32)};
}
constexpr Powers kOverAllLanes = powers_over(kLanes * kLaneBytes);
constexpr Powers kOverOneLane = powers_over(kLaneBytes);

#define QV_FOLDING __attribute__((target("pclmul,sse4.1"), always_inline)) inline

QV_FOLDING __m128i folded(__m128i lane, __m128i powers, __m128i next) {
  const __m128i low = _mm_clmulepi64_si128(lane, powers, 0x00);
  const __m128i high = _mm_clmulepi64_si128(lane, powers, 0x11);
  return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

QV_FOLDING __m128i load_lane(const std::uint8_t* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

__attribute__((target("pclmul,sse4.1"))) std::uint32_t update_by_folding(
    std::uint32_t crc, std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  __m128i lanes[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = load_lane(at + i * kLaneBytes);
  lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(crc)));
  at += kLanes * kLaneBytes;
  const __m128i over_all = _mm_set_epi64x(kOverAllLanes.high, kOverAllLanes.low);
  for (; end - at >= static_cast<std::ptrdiff_t>(kLanes * kLaneBytes); at += kLanes * kLaneBytes) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      lanes[i] = folded(lanes[i], over_all, load_lane(at + i * kLaneBytes));
    }
  }
  const __m128i over_one = _mm_set_epi64x(kOverOneLane.high, kOverOneLane.low);
  __m128i lane = lanes[0];
  for (std::size_t i = 1; i < kLanes; ++i) lane = folded(lane, over_one, lanes[i]);
  for (; end - at >= static_cast<std::ptrdiff_t>(kLaneBytes); at += kLaneBytes) {
    lane = folded(lane, over_one, load_lane(at));
  }
  std::array<std::uint8_t, kLaneBytes> rest;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(rest.data()), lane);
  return crc32_update_by_tables(crc32_update_by_tables(0, rest),
                                bytes.last(static_cast<std::size_t>(end - at)));
}

// The same with registers of 512 bits, which hold four lanes each: sixteen lanes run side by side.
// What remains in them is as many bytes with the same remainder as the whole text.
constexpr std::size_t kWideBytes = 64;
constexpr std::size_t kWideRegisters = 4;
constexpr std::size_t kWideStepBytes = kWideRegisters * kWideBytes;
constexpr Powers kOverWideStep = powers_over(kWideStepBytes);

__attribute__((target("avx512f,vpclmulqdq"))) std::uint32_t update_by_wide_folding(
    std::uint32_t crc, std::span<const std::uint8_t> bytes) {
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  const __m512i powers = _mm512_set4_epi64(kOverWideStep.high, kOverWideStep.low,
                                           kOverWideStep.high, kOverWideStep.low);
  __m512i lanes[kWideRegisters];
  for (std::size_t i = 0; i < kWideRegisters; ++i) {
    lanes[i] = _mm512_loadu_si512(at + i * kWideBytes);
  }
  lanes[0] = _mm512_xor_si512(lanes[0], _mm512_maskz_set1_epi32(1, static_cast<int>(crc)));
  at += kWideStepBytes;
  for (; end - at >= static_cast<std::ptrdiff_t>(kWideStepBytes); at += kWideStepBytes) {
    for (std::size_t i = 0; i < kWideRegisters; ++i) {
      const __m512i low = _mm512_clmulepi64_epi128(lanes[i], powers, 0x00);
      const __m512i high = _mm512_clmulepi64_epi128(lanes[i], powers, 0x11);
      // Exclusive or of all three.
      lanes[i] =
          _mm512_ternarylogic_epi64(low, high, _mm512_loadu_si512(at + i * kWideBytes), 0x96);
    }
  }
  std::array<std::uint8_t, kWideStepBytes> rest;
  for (std::size_t i = 0; i < kWideRegisters; ++i) {
    _mm512_storeu_si512(rest.data() + i * kWideBytes, lanes[i]);
  }
  return crc32_update(update_by_folding(0, rest), bytes.last(static_cast<std::size_t>(end - at)));
}

}  // namespace
#endif

std::uint32_t crc32_update(std::uint32_t register_value, std::span<const std::uint8_t> bytes) {
#ifdef QV_CRC32_BY_FOLDING
  if (bytes.size() >= 2 * kWideStepBytes && __builtin_cpu_supports("avx512f") &&
      __builtin_cpu_supports("vpclmulqdq") && __builtin_cpu_supports("pclmul")) {
    return update_by_wide_folding(register_value, bytes);
  }
  if (bytes.size() >= kLanes * kLaneBytes && __builtin_cpu_supports("pclmul") &&
      __builtin_cpu_supports("sse4.1")) {
    return update_by_folding(register_value, bytes);
  }
#endif
  return crc32_update_by_tables(register_value, bytes);
}

}  // namespace qv::native::cpr
