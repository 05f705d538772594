// Text as byte container: one character stands for one byte, through a table made once from the
// system's ANSI code page. Where that page is a multi-byte one, one byte can't be one character:
// the table is that of code page 1252 there, so that every byte string survives on every system.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "automation/text.h"

namespace qv {

// The code page of the table: the system's, or 1252.
unsigned byte_code_page() noexcept;

Text text_of_bytes(std::span<const std::uint8_t> bytes);
// Writes bytes.size() characters.
void put_bytes(std::span<const std::uint8_t> bytes, wchar_t* out);

std::vector<std::uint8_t> bytes_of_text(std::wstring_view text);
// Writes text.size() bytes.
void get_bytes(std::wstring_view text, std::uint8_t* out);

// Replaces each character by what its byte gives back: what handing a text over to a narrow service
// and back does to it. Nothing is written where nothing changes.
void round_trip(Text& text);

}  // namespace qv
