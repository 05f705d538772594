#include <algorithm>
#include <cstdlib>
#include <vector>

#include "native/zstr/mask.h"
#include "native/zstr/sort_key.h"

// A key behind a sort flag of two bytes and a table of the length that the third tells.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qv::native::zstr;
  if (size < 3) return 0;
  const auto flag = static_cast<std::int16_t>(data[0] | data[1] << 8);
  const std::size_t table_size = std::min<std::size_t>(data[2], size - 3);
  const std::vector<std::uint8_t> table(data + 3, data + 3 + table_size);
  const std::vector<std::uint8_t> key(data + 3 + table_size, data + size);

  auto shown = key;
  auto sorting = key;
  auto sorted = key;
  auto weighed = key;
  const std::size_t shown_size = Mask_Display(shown);
  const std::size_t sorting_size = Mask_Sort(sorting);
  const std::size_t sorted_size = Key_Sort(sorted, flag, table, kWindows1252Folding);
  XLate(weighed, table);
  if (std::max({shown_size, sorting_size, sorted_size}) > key.size()) std::abort();

  // A key without marks is its own form for both.
  const bool has_marks = std::ranges::any_of(
      key, [](std::uint8_t byte) { return byte == '<' || byte == '@' || byte == '"'; });
  if (!has_marks && (shown != key || sorting != key)) std::abort();
  return 0;
}
