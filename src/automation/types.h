// The calling language's scalar types, each with the size and layout that Automation gives it.
#pragma once

#include <windows.h>
// wtypes.h needs windows.h before it.
#include <wtypes.h>

#include <concepts>
#include <cstdint>

namespace qv {

using Byte = std::uint8_t;
using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;
using Double = double;

// True is -1 in memory and as a number; any other non-zero pattern counts as true.
class Boolean {
 public:
  constexpr Boolean() noexcept = default;
  // Only bool converts: a stray number or pointer must not become a Boolean unnoticed.
  constexpr Boolean(std::same_as<bool> auto value) noexcept
      : raw_(value ? VARIANT_TRUE : VARIANT_FALSE) {}
  constexpr operator bool() const noexcept { return raw_ != VARIANT_FALSE; }
  // Without this, True would reach an Integer result by way of bool, as 1.
  template <std::integral Number>
  requires(!std::same_as<Number, bool>) constexpr operator Number() const noexcept {
    return static_cast<Number>(raw_);
  }

 private:
  VARIANT_BOOL raw_ = VARIANT_FALSE;
};

inline constexpr Boolean True{true};
inline constexpr Boolean False{false};

// Days since 30 December 1899, local time; the fraction is the time of day.
struct Date {
  double days = 0;
  friend constexpr bool operator==(Date, Date) = default;
};

// Ten-thousandths.
struct Currency {
  std::int64_t ten_thousandths = 0;
  friend constexpr bool operator==(Currency, Currency) = default;
};

static_assert(sizeof(Boolean) == sizeof(VARIANT_BOOL) && sizeof(Date) == sizeof(DATE) &&
              sizeof(Currency) == sizeof(CY));

}  // namespace qv
