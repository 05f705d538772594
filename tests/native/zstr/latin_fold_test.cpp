#include "native/zstr/latin_fold.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace qv::native::zstr {
namespace {

const FoldTable& kUpperCase = kWindows1252Folding.upper_case;
const FoldTable& kWithoutAccent = kWindows1252Folding.without_accent;

std::string folded(const FoldTable& table, std::string_view text) {
  std::string result;
  for (const char c : text) {
    result += static_cast<char>(table[static_cast<unsigned char>(c)]);
  }
  return result;
}

constexpr std::string_view kSmall =
    "abcdefghijklmnopqrstuvwxyz"
    "\xE0\xE1\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF"
    "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF8\xF9\xFA\xFB\xFC\xFD\xFE\xFF\x9A\x9C\x9E";
constexpr std::string_view kCapital =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF"
    "\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD8\xD9\xDA\xDB\xDC\xDD\xDE\x9F\x8A\x8C\x8E";

TEST(LatinFold, every_small_letter_has_its_capital) {
  EXPECT_EQ(folded(kUpperCase, kSmall), kCapital);
}

TEST(LatinFold, everything_else_stays_as_it_is) {
  for (unsigned code = 0; code < 256; ++code) {
    if (kSmall.find(static_cast<char>(code)) != std::string_view::npos) continue;
    EXPECT_EQ(kUpperCase[code], code);
  }
}

TEST(LatinFold, accents_go_and_case_stays) {
  EXPECT_EQ(folded(kWithoutAccent,
                   "\xC0\xC1\xC2\xC3\xC4\xC5\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF\xD1\xD2\xD3\xD4"
                   "\xD5\xD6\xD8\xD9\xDA\xDB\xDC\xDD\x8A\x8E\x9F"),
            "AAAAAACEEEEIIIINOOOOOOUUUUYSZY");
  EXPECT_EQ(folded(kWithoutAccent,
                   "\xE0\xE1\xE2\xE3\xE4\xE5\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF\xF1\xF2\xF3\xF4"
                   "\xF5\xF6\xF8\xF9\xFA\xFB\xFC\xFD\x9A\x9E\xFF"),
            "aaaaaaceeeeiiiinoooooouuuuyszy");
}

TEST(LatinFold, sixty_letters_bear_accents_and_no_other_code_changes) {
  int changed = 0;
  for (unsigned code = 0; code < 256; ++code) changed += kWithoutAccent[code] != code ? 1 : 0;
  EXPECT_EQ(changed, 60);
}

TEST(LatinFold, folding_and_taking_accents_off_commute) {
  for (unsigned code = 0; code < 256; ++code) {
    EXPECT_EQ(kUpperCase[kWithoutAccent[code]], kWithoutAccent[kUpperCase[code]]) << code;
  }
}

}  // namespace
}  // namespace qv::native::zstr
