#include "native/rtlib/tokenizer.h"

#include "native/rtlib/c_string.h"

namespace qv::native::rtlib {

template <class C>
void Tokenizer<C>::start(std::basic_string_view<C> text) {
  text_ = c_text(text);
  next_ = 0;
}

template <class C>
std::optional<typename Tokenizer<C>::Token> Tokenizer<C>::next(
    std::basic_string_view<C> delimiters) {
  std::basic_string_view<C> rest(text_);
  rest.remove_prefix(next_);
  const auto skipped = find_not_in_set(rest, delimiters);
  if (!skipped) {
    next_ = text_.size();
    return std::nullopt;
  }
  rest.remove_prefix(*skipped);
  const std::size_t length = find_in_set(rest, delimiters).value_or(rest.size());
  const Token token{next_ + *skipped, length};
  // The delimiter that ends the token belongs to it: another set may not know it any more.
  next_ = token.position + length + (length < rest.size() ? 1 : 0);
  return token;
}

template class Tokenizer<char>;
template class Tokenizer<char16_t>;

}  // namespace qv::native::rtlib
