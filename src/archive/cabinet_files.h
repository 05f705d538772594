// File access for the platform's cabinet services, which know files by narrow names alone: the
// names handed to them are UTF-8, and come back to these functions only.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "automation/text.h"

namespace qv::archive {

std::string utf8_of(std::wstring_view text);
// Of UTF-8, or of the ANSI code page where the bytes are none.
Text text_of_utf8(std::string_view bytes);

// As the C run time's functions that the services expect, with its flags (_O_...); -1 is failure.
// No exception leaves them.
namespace cabinet_files {

inline constexpr INT_PTR kNoFile = -1;

INT_PTR open(const char* name, int flags) noexcept;
UINT read(INT_PTR file, void* bytes, UINT count) noexcept;
UINT write(INT_PTR file, const void* bytes, UINT count) noexcept;
int close(INT_PTR file) noexcept;
LONG seek(INT_PTR file, LONG distance, int origin) noexcept;

void* allocate(ULONG bytes) noexcept;
void release(void* block) noexcept;

inline HANDLE handle_of(INT_PTR file) noexcept { return reinterpret_cast<HANDLE>(file); }

}  // namespace cabinet_files

// A failure of the cabinet services: 20000 plus their code.
[[noreturn]] void raise_cabinet_error(Long code, const Text& description);

}  // namespace qv::archive
