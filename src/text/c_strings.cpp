#include "native/rtlib/c_string.h"

#include <optional>
#include <span>
#include <string>

#include "automation/bytes.h"
#include "automation/thread_state.h"
#include "native/rtlib/c_number.h"
#include "native/rtlib/tokenizer.h"
#include "runtime/characters.h"
#include "text/primitives.h"

namespace qv::text {
namespace {

using namespace native::rtlib;

Long position(std::optional<std::size_t> place) {
  return place ? static_cast<Long>(*place) + 1 : 0;
}

std::size_t character_count(Long count) { return count > 0 ? static_cast<std::size_t>(count) : 0; }

// What a narrow service is given of a text, which changes to what it gets back from there.
std::string narrowed(Text& text) {
  round_trip(text);
  std::string bytes(text.size(), '\0');
  get_bytes(text, reinterpret_cast<std::uint8_t*>(bytes.data()));
  return bytes;
}

template <class Value>
Value read_number(Text& text, Long& end, ParsedNumber<Value> (*parse)(std::string_view)) {
  const auto number = parse(narrowed(text));
  end = static_cast<Long>(number.used) + 1;
  return number.value;
}

struct TokenWalk {
  Tokenizer<char16_t> tokens;
};

}  // namespace

Long StrcSpn(const Text& sString, const Text& sCharSet) {
  return position(find_in_set(code_units(sString), code_units(sCharSet)));
}

Long StrSpn(const Text& sString, const Text& sCharSet) {
  return position(find_not_in_set(code_units(sString), code_units(sCharSet)));
}

Long StrnCmp(const Text& String1, const Text& String2, Long Count) {
  return compare(code_units(String1), code_units(String2), character_count(Count));
}

Long StrniCmp(const Text& String1, const Text& String2, Long Count) {
  return compare_ignoring_case(code_units(String1), code_units(String2), character_count(Count));
}

Long StrrChr(Text& sString, Integer c) {
  return position(find_last<char>(narrowed(sString), static_cast<char>(c)));
}

void StrRev(Text& sString) {
  round_trip(sString);
  reverse(std::span(reinterpret_cast<char16_t*>(sString.data()), sString.size()));
}

Long StrTok(const Text& sToken, const Text& sDelimit) {
  auto& tokens = per_thread<TokenWalk>().tokens;
  if (!sToken.empty()) tokens.start(code_units(sToken));
  const auto token = tokens.next(code_units(sDelimit));
  return token ? static_cast<Long>(token->position) + 1 : 0;
}

void StrTod(Text& sstr, Long& EndPtr, Double& Value) {
  Value = read_number(sstr, EndPtr, parse_double);
}

Long StrTol(Text& sstr, Long& EndPtr) { return read_number(sstr, EndPtr, parse_int32); }

Long StrToul(Text& sstr, Long& EndPtr) {
  return static_cast<Long>(read_number(sstr, EndPtr, parse_uint32));
}

}  // namespace qv::text
