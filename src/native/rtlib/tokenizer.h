#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qv::native::rtlib {

// The walk through a text by tokens: what the C run time keeps hidden between two calls is this
// value, which the caller keeps (one a thread). It holds its own copy of the text, up to the first
// character 0. For char and char16_t.
template <class C>
class Tokenizer {
 public:
  struct Token {
    std::size_t position;  // from 0, in the text that was started
    std::size_t length;    // at least 1
  };

  // Begins a new text; what was left of the last one is forgotten.
  void start(std::basic_string_view<C> text);

  // The next token: the longest run of characters outside the set, which may differ from call to
  // call. Leading members of the set are passed over. None at the end, and none for ever after.
  std::optional<Token> next(std::basic_string_view<C> delimiters);

 private:
  std::basic_string<C> text_;
  std::size_t next_ = 0;
};

}  // namespace qv::native::rtlib
