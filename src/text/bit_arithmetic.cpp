#include <cmath>
#include <limits>

#include "automation/run_time_error.h"
#include "native/rtlib/bits.h"
#include "text/primitives.h"

namespace qv::text {
namespace {

using namespace native::rtlib;

template <class Result>
void divide(Long numer, Long denom, Result& quot, Result& rmnd) {
  if (denom == 0) raise(kDivisionByZero);
  const std::int64_t quotient = std::int64_t{numer} / denom;
  const std::int64_t remainder = std::int64_t{numer} % denom;
  const auto fits = [](std::int64_t value) {
    return value >= std::numeric_limits<Result>::min() &&
           value <= std::numeric_limits<Result>::max();
  };
  if (!fits(quotient) || !fits(remainder)) raise(kOverflow);
  quot = static_cast<Result>(quotient);
  rmnd = static_cast<Result>(remainder);
}

}  // namespace

void Shl(Integer& Value, Integer shift) { Value = shift_left(Value, shift); }
void Shr(Integer& Value, Integer shift) { Value = shift_right(Value, shift); }
Integer Rotl(Integer Value, Integer shift) { return rotate_left(Value, shift); }
Integer Rotr(Integer Value, Integer shift) { return rotate_right(Value, shift); }
void Lshl(Long& Value, Long shift) { Value = shift_left(Value, shift); }
void Lshr(Long& Value, Long shift) { Value = shift_right(Value, shift); }
Long Lrotl(Long Value, Long shift) { return rotate_left(Value, shift); }
Long Lrotr(Long Value, Long shift) { return rotate_right(Value, shift); }

void Div(Long numer, Long denom, Integer& quot, Integer& rmnd) { divide(numer, denom, quot, rmnd); }

void Ldiv(Long numer, Long denom, Long& quot, Long& rmnd) { divide(numer, denom, quot, rmnd); }

Double Floor(Double x) { return std::floor(x); }
Double Ceil(Double x) { return std::ceil(x); }

Long GetPointer(Long ptr, Long Offset) {
  return static_cast<Long>(static_cast<std::uint32_t>(ptr) + static_cast<std::uint32_t>(Offset));
}

}  // namespace qv::text
