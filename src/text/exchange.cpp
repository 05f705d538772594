#include <utility>

#include "text/text_tools.h"

namespace qv::text {
namespace {

bool is_plain(const Variant& variable) noexcept { return (variable.raw()->vt & VT_BYREF) == 0; }

}  // namespace

void Swap(Variant& v1, Variant& v2) {
  if (is_plain(v1) && is_plain(v2)) {
    std::swap(*v1.raw(), *v2.raw());
    return;
  }
  // A reference to a typed variable takes the other's value converted, as an assignment would.
  Variant first(v1);
  v1.assign(Variant(std::as_const(v2)));
  v2.assign(std::move(first));
}

void SwapZ(Long& i, Long& j) {
  if (i == 0 || (j < i && j > 0)) std::swap(i, j);
}

}  // namespace qv::text
