#include "files/file_handles.h"

#include <cstdint>
#include <cstring>
#include <memory>

#include "automation/bytes.h"
#include "constants.h"
#include "frame/error_state.h"
#include "runtime/directory.h"
#include "runtime/err.h"
#include "runtime/file_errors.h"
#include "runtime/system_name.h"
#include "text/value_images.h"

namespace qv::files {
namespace {

DWORD sharing(Long mode) {
  if (mode == 0) return 0;
  DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
  if ((mode & File_Open_Const::SH_DENYWR) != 0) share = FILE_SHARE_READ;
  // 48 has the bit of SH_DENYWR too, so this comes after it.
  if ((mode & File_Open_Const::SH_DENYRD) == File_Open_Const::SH_DENYRD) share = 0;
  return share;
}

DWORD disposition(Long flags) {
  if ((flags & File_Open_Const::O_EXCL) != 0) return OPEN_EXISTING;
  if ((flags & File_Open_Const::O_TRUNC) != 0) return CREATE_ALWAYS;
  return (flags & File_Open_Const::O_CREAT) != 0 ? CREATE_NEW : OPEN_EXISTING;
}

DWORD image_bytes(const Variant& value) {
  return static_cast<DWORD>(value.is_text() ? value.text_view().size()
                                            : text::image_width(value.type()));
}

template <class Value>
void put_image(std::uint8_t* target, Value value) {
  std::memcpy(target, &value, sizeof value);
}

void put_value(std::uint8_t* target, const Variant& value) {
  switch (value.type()) {
    case VT_UI1:
      return put_image(target, value.to_byte());
    case VT_I2:
    case VT_BOOL:
      return put_image(target, value.to_integer());
    case VT_I4:
      return put_image(target, value.to_long());
    case VT_R4:
      return put_image(target, value.to_single());
    case VT_R8:
      return put_image(target, value.to_double());
    case VT_CY:
      return put_image(target, value.to_currency());
    case VT_DATE:
      return put_image(target, value.to_date());
    default:
      return get_bytes(value.text_view(), target);
  }
}

}  // namespace

Boolean File_Open32(const Text& FileName, Long OFlag, Long SMode, Long& FlagsAndAttributes,
                    Long& Handle) {
  constexpr const wchar_t* kSource = L"KwRtLibMod.File_Open32";
  return frame::handled(kSource, frame::kAppendSystemText, True, [&]() -> Boolean {
    DWORD access = GENERIC_READ;
    if ((OFlag & File_Open_Const::O_RDONLY) != 0) {
      const bool is_folder = (get_attr(FileName) & kDirectory) != 0;
      // Without this flag the system opens no folder.
      if (is_folder) FlagsAndAttributes = FILE_FLAG_BACKUP_SEMANTICS;
    } else {
      access |= GENERIC_WRITE;
    }
    if (FlagsAndAttributes == 0) FlagsAndAttributes = FILE_ATTRIBUTE_NORMAL;
    const HANDLE file =
        CreateFileW(system_name(FileName).c_str(), access, sharing(SMode), nullptr,
                    disposition(OFlag), static_cast<DWORD>(FlagsAndAttributes), nullptr);
    capture_last_dll_error();
    if (file != INVALID_HANDLE_VALUE) {
      Handle = static_cast<Long>(reinterpret_cast<std::intptr_t>(file));
      return False;
    }
    Handle = 0;
    frame::Set_Error({.Number = frame::kFirstApplicationError, .Source = kSource},
                     frame::kAppendSystemText);
    return True;
  });
}

Boolean File_Close32(Long& Handle) {
  if (Handle == 0) return False;
  const BOOL closed = CloseHandle(system_handle(Handle));
  capture_last_dll_error();
  if (!closed) return True;
  Handle = 0;
  return False;
}

Integer File_Read32(Long Handle, Variant& Buffer) {
  return frame::handled(L"KwRtLibMod.File_Read32", frame::kTakeError, Integer{True}, [&] {
    const VARTYPE type = Buffer.type();
    const DWORD wanted_bytes = image_bytes(Buffer);
    if (wanted_bytes == 0) return Integer{False};
    const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(wanted_bytes);
    DWORD done_bytes = 0;
    const BOOL success =
        ReadFile(system_handle(Handle), bytes.get(), wanted_bytes, &done_bytes, nullptr);
    capture_last_dll_error();
    if (!success) return Integer{True};
    if (done_bytes < wanted_bytes) raise(kInputPastEnd);
    Buffer.assign(text::value_of_image(text_of_bytes({bytes.get(), wanted_bytes}), type));
    return Integer{False};
  });
}

Integer File_Write32(Long Handle, const Variant& Buffer) {
  return frame::handled(L"KwRtLibMod.File_Write32", frame::kTakeError, Integer{True}, [&] {
    const DWORD count_bytes = image_bytes(Buffer);
    if (count_bytes == 0) return Integer{False};
    const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(count_bytes);
    put_value(bytes.get(), Buffer);
    DWORD done_bytes = 0;
    const BOOL success =
        WriteFile(system_handle(Handle), bytes.get(), count_bytes, &done_bytes, nullptr);
    capture_last_dll_error();
    return success ? Integer{False} : Integer{True};
  });
}

}  // namespace qv::files
