// The lines that a benchmark prints: a heading that names the peer, and a row a comparison. ./bench
// reads them, so they have one form.
#pragma once

#include <cstdio>

namespace qv::bench {

// What our figure over the peer's should be. Where the peer's is a time, ours may be longer by a
// fixed one as well.
struct Goal {
  const char* sign = nullptr;
  double ratio = 0;
  double extra_ns = 0;

  Goal beside(double peers_ns) const { return {sign, ratio + extra_ns / peers_ns, 0}; }
};
constexpr Goal at_most(double ratio, double extra_ns = 0) { return {"<=", ratio, extra_ns}; }
constexpr Goal at_least(double ratio) { return {">=", ratio, 0}; }
constexpr Goal kNoGoal;

inline void print_heading(const char* what, const char* peer) {
  std::printf("%s; peer: %s\n", what, peer);
}

inline void print_row(const char* what, double ours, double peers, const char* unit, double ratio,
                      const Goal& goal = kNoGoal) {
  std::printf("  %-46s %12.2f %12.2f %-6s x %7.4f", what, ours, peers, unit, ratio);
  if (goal.sign != nullptr) std::printf("  goal %s %.4f", goal.sign, goal.ratio);
  std::printf("\n");
}

}  // namespace qv::bench
