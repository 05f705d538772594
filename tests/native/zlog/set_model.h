#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "native/zlog/bit_map.h"

namespace qv::native::zlog {

// A bit set as plainly as it can be written: what the engine is compared with.
using Model = std::vector<bool>;

inline BitMap map_of(const Model& model) {
  BitMap map = *BitMap::make(static_cast<std::int32_t>(model.size()));
  for (std::size_t bit = 0; bit < model.size(); ++bit) {
    if (model[bit]) map.view().words[bit / 32] |= std::uint32_t{1} << bit % 32;
  }
  return map;
}

inline Model model_of(ConstBitSpan set) {
  Model model(static_cast<std::size_t>(set.limit()));
  for (std::size_t bit = 0; bit < model.size(); ++bit) {
    model[bit] = (set.words[bit / 32] >> bit % 32 & 1) != 0;
  }
  return model;
}

// Bits past the last one that are set all the same: 0 for every map that is in order.
inline std::uint32_t trailing_bits(ConstBitSpan set) {
  const std::int32_t last = set.bits % 32;
  return last == 0 ? 0 : set.words.back() >> last;
}

inline std::vector<std::int32_t> set_bits_of(const Model& model) {
  std::vector<std::int32_t> bits;
  for (std::size_t bit = 0; bit < model.size(); ++bit) {
    if (model[bit]) bits.push_back(static_cast<std::int32_t>(bit));
  }
  return bits;
}

// `bits` bits of which about `share` are set.
inline Model random_model(std::mt19937& random, std::int32_t bits, double share) {
  std::bernoulli_distribution is_set(share);
  Model model(static_cast<std::size_t>(bits));
  for (std::size_t bit = 0; bit < model.size(); ++bit) model[bit] = is_set(random);
  return model;
}

// Sizes about every boundary that the engine's loops have.
inline const std::vector<std::int32_t> kSizes = {0,   1,   2,   31,  32,   33,   63,   64,   65,
                                                 95,  96,  97,  127, 128,  129,  255,  256,  257,
                                                 511, 512, 513, 999, 1024, 1025, 2049, 4133, 20011};

inline const std::vector<double> kShares = {0, 0.0005, 0.01, 0.1, 0.5, 0.97, 1};

}  // namespace qv::native::zlog
