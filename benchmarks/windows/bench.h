// Paired runs: ours and the peer's in turn, and the median of the ratios of their times.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

#include "row.h"

namespace qv::bench {

template <class Run>
double seconds(Run&& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// The times of one operation, from several rounds.
struct Times {
  std::vector<double> ours_s;
  std::vector<double> peers_s;

  void add(double our_time_s, double peers_time_s) {
    ours_s.push_back(our_time_s);
    peers_s.push_back(peers_time_s);
  }
  double ratio() const {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours_s.size(); ++i) ratios.push_back(ours_s[i] / peers_s[i]);
    return median(ratios);
  }
  void print(const char* what, std::size_t count, const Goal& goal = kNoGoal) const {
    const double to_ns = 1e9 / static_cast<double>(count);
    const double peers_ns = median(peers_s) * to_ns;
    print_row(what, median(ours_s) * to_ns, peers_ns, "ns", ratio(), goal.beside(peers_ns));
  }
};

}  // namespace qv::bench
