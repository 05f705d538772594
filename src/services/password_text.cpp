#include "services/password_text.h"

#include <utility>
#include <vector>

#include "archive/block_coder.h"
#include "automation/variant.h"
#include "frame/error_state.h"
#include "runtime/numbers.h"
#include "runtime/random.h"
#include "text/numerals.h"
#include "text/primitives.h"

namespace qv::services {
namespace {

constexpr Integer kPositionalCode = 0;
constexpr Long kCrcStart = -1;

Integer code_of(Long start_code) {
  constexpr Long kRandomCodes = 256;
  if (start_code >= 0) return Variant(start_code).to_integer();
  Randomize();
  return static_cast<Integer>(kRandomCodes * Rnd());
}

Text scrambled_field(Text text, Integer code) {
  text::Crypt(text, code);
  return text::BinToHex(text);
}

Text clear_field(std::wstring_view field, Integer code) {
  Text text = text::HexToBin(Text(field));
  text::Crypt(text, code);
  return text;
}

void scramble_password(Text& Password, Long StartCode, bool is_full) {
  Text clear = std::exchange(Password, Text());
  const Integer code = code_of(StartCode);
  Text stored = scrambled_field(std::move(clear), code);
  if (is_full) {
    stored = concat({stored, L"-", scrambled_field(decimal(code), kPositionalCode), L"-"});
    const Long check = archive::PkCRC(stored, kCrcStart);
    stored += scrambled_field(decimal(check), kPositionalCode);
  }
  Password = std::move(stored);
}

std::vector<std::wstring_view> split(std::wstring_view text) {
  std::vector<std::wstring_view> fields;
  for (std::size_t end = text.find(L'-'); end != std::wstring_view::npos; end = text.find(L'-')) {
    fields.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  fields.push_back(text);
  return fields;
}

// The code that a full text tells, once its check value has been found to fit.
Integer checked_code(const std::vector<std::wstring_view>& fields) {
  if (fields.size() < 3) raise(kSubscriptOutOfRange);
  const Double check = Val(clear_field(fields[2], kPositionalCode));
  Text checked = concat({fields[0], L"-", fields[1], L"-"});
  if (check != archive::PkCRC(checked, kCrcStart)) {
    raise({.number = frame::kFirstApplicationError, .description = L"cryptcode"});
  }
  return Variant(Val(clear_field(fields[1], kPositionalCode))).to_integer();
}

}  // namespace

Boolean PasswordCryptEx(Text& Password, Long StartCode) {
  return frame::handled(L"QvRtLibOle.KwRtLibModPasswordCryptEx", frame::kTakeError, True, [&] {
    scramble_password(Password, StartCode, true);
    return False;
  });
}

Boolean PasswordCrypt(Text& Password) {
  return frame::handled(L"QvRtLibOle.KwRtLibModPasswordCrypt", frame::kTakeError, True, [&] {
    scramble_password(Password, kPositionalCode, false);
    return False;
  });
}

Boolean PasswordDecrypt(Text& Password) {
  return frame::handled(L"QvRtLibOle.KwRtLibModPasswordDecrypt", frame::kTakeError, True, [&] {
    if (Password.empty()) return False;
    const auto fields = split(Password);
    const Integer code = fields.size() > 1 ? checked_code(fields) : kPositionalCode;
    Password = clear_field(fields[0], code);
    return False;
  });
}

}  // namespace qv::services
