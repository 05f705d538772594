#include <cstdlib>
#include <string>

#include "console/program.h"
#include "native/bags/directory.h"
#include "native/bags/stored_bag.h"
#include "qvbag/shown_bag.h"

namespace {

using namespace qv::native::bags;

void go_through(const std::uint8_t* data, std::size_t size, const BagParts& parts) {
  if (parts.directory + parts.directory_bytes > size || parts.data + parts.data_bytes > size) {
    std::abort();
  }
  const SpanSource source({data, size});
  const std::string_view directory(reinterpret_cast<const char*>(data) + parts.directory,
                                   parts.directory_bytes);
  std::size_t names_characters = 0;
  for (Names names(directory); names.next();) {
    names_characters += names.name().size();
    const auto position = names.value_position();
    if (position.size() < kPositionBytes) continue;
    const SpanSource bytes(
        {reinterpret_cast<const std::uint8_t*>(position.data()), kPositionBytes});
    const auto place = find_value(source, parts.data + read_number<std::uint32_t>(bytes, 0));
    if (place.status == ReadStatus::kDone && place.end > size) std::abort();
  }
  if (names_characters > directory.size()) std::abort();
}

// What the command-line program says stays within bounds that the file's size sets.
void show_all(const std::uint8_t* data, std::size_t size) {
  using namespace qv::qvbag;
  std::size_t said = 0;
  const auto count = [&](std::string_view text) { said += text.size(); };
  try {
    const Bag bag(std::vector<std::uint8_t>(data, data + size));
    const Selection all(bag, {});
    show(bag, all, count);
    show_json(bag, all, count);
    tell_errors(bag, all, count);
  } catch (const qv::console::Failure&) {
    return;
  }
  if (said > 1000 + 200 * size) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const SpanSource source({data, size});
  go_through(data, size, find_bag_1(source));
  go_through(data, size, find_bag_2(source));
  show_all(data, size);
  return 0;
}
