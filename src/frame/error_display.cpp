#include "frame/error_display.h"

#include <windows.h>
// In angle brackets: this folder has a header of that name.
#include <constants.h>

#include <array>
#include <string>

#include "automation/bytes.h"
#include "automation/late_bound.h"
#include "frame/error_state.h"
#include "frame/file_retry.h"
#include "native/rtlib/crc16.h"
#include "native/rtlib/hex.h"
#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"
#include "runtime/format_date.h"
#include "runtime/system_text.h"
#include "ui/message_boxes.h"

namespace qv::frame {
namespace {

using namespace DispError_Const;

constexpr const wchar_t* kLineEnd = L"\r\n";
constexpr const wchar_t* kLogLineEnd = L" - ";

// Styles of the box.
constexpr Long kIconMask = 112;
constexpr Long kCritical = 16;
constexpr Long kExclamation = 48;
constexpr Long kInformation = 64;
constexpr Long kToForeground = 65536;
constexpr Long kOfferSaving = 0x20000000;
constexpr Long kHasHelpFile = 0x40000000;

constexpr Long kNoBoxResult = 1;

bool has(Long flags, Long flag) { return (flags & flag) != 0; }

// In resume-next mode: a value without a text gives none.
Text text_of(const Variant& given) {
  Text text;
  attempt([&] { text = given.to_text(); });
  return text;
}

void end_line(Text& text) {
  if (!text.empty()) text += kLineEnd;
}

// Four hexadecimal digits, in brackets.
Text check_mark(std::wstring_view text) {
  constexpr std::uint16_t kStart = 0xFFFF;
  const std::uint16_t crc = native::rtlib::crc16(bytes_of_text(text), kStart);
  const std::array<std::uint8_t, 2> bytes{static_cast<std::uint8_t>(crc >> 8),
                                          static_cast<std::uint8_t>(crc & 0xFF)};
  std::array<char16_t, 4> digits;
  native::rtlib::hex_encode(bytes, digits.data());
  return concat({L" [", std::wstring(digits.begin(), digits.end()), L"]"});
}

Text log_line(const Text& message, Long flags) {
  Text line;
  if (has(flags, DE_TIME)) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    line = concat({day_and_minute(now), L" "});
  }
  line += message;
  if (has(flags, DE_CRC)) line += check_mark(line);
  line += kLineEnd;
  return line;
}

Long asked_buttons(const Variant& given, Long recorded) {
  if (given.is_missing()) return recorded;
  Long buttons = 0;
  attempt([&] { buttons = given.to_long(); });
  return buttons;
}

void append_record(Text& text, Long& buttons, const QVtError& record) {
  const bool has_icon = has(buttons, kIconMask);
  if (record.Number == 0) {
    if (!record.Source.empty()) text += concat({L"[", record.Source, L"]"});
    if (!has_icon) buttons |= kExclamation;
    return;
  }
  text += concat({L"[#", decimal(record.Number), L" - ", record.Source, L"]"});
  if (!has_icon) buttons |= kCritical;
  if (record.LastDLLError != 0) {
    end_line(text);
    text += concat({L"[DLL:", SystemError(record.LastDLLError), L"]"});
  }
}

Long show(const Text& text, Long buttons, Long flags, const Text& given_title, const Text& HelpFile,
          const Text& HelpId) {
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  Text title = given_title.empty() ? error_state().Caption : given_title;
  if (title.empty()) title = L" ";
  if (!has(flags, DE_NOSAVE)) buttons |= kOfferSaving;
  if (!HelpFile.empty()) buttons |= kHasHelpFile;
  return ui::Show_ErrorBox(text, buttons, title, HelpFile, HelpId);
}

Text on_one_line(std::wstring_view text) {
  const std::wstring_view line_end = kLineEnd;
  std::wstring line;
  for (std::size_t end = 0; (end = text.find(line_end)) != std::wstring_view::npos;
       text.remove_prefix(end + line_end.size())) {
    line.append(text.substr(0, end)).append(kLogLineEnd);
  }
  return Text(line.append(text));
}

}  // namespace

Text SystemError(Long dwMessageId) {
  Text text = system_text(dwMessageId);
  capture_last_dll_error();
  return text;
}

void SetSvrError(const Variant& Svr) {
  Variant number;
  Variant source;
  Variant description;
  Variant help_file;
  Variant help_context;
  Variant last_dll_error;
  attempt([&] {
    using late_bound::by_reference;
    late_bound::call(
        Svr.to_object(), L"LastError",
        {by_reference(number), by_reference(source), by_reference(description),
         by_reference(help_file), by_reference(help_context), by_reference(last_dll_error)});
  });
  Set_Error({number, source, description, help_file, help_context, last_dll_error});
  err().forget_error();
}

void Log_Write(const Text& LogFileName, const Text& msg, Long Flags, const Variant& Prefix) {
  using namespace File_Open_Const;
  Long record_length = 0;
  Long file = 0;
  attempt([&] {
    const Long number = File_OpenRetry(LogFileName, O_RDWR | O_APPEND | O_CREAT | O_TEXT, SH_DENYWR,
                                       record_length, file, kPermissionDenied);
    if (number != 0) return;
    if (!Prefix.is_missing()) file_numbers::print(file, concat({text_of(Prefix), L">"}));
    file_numbers::print(file, log_line(msg, Flags));
  });
  File_CloseRetry(file);
  err().forget_error();
}

Text Error_Message(const Variant& msg, Long Flags) {
  Text text;
  const Variant missing = Variant::missing();
  Disp_ErrorEx(msg, missing, missing, Flags | DE_NOSHOW, missing, {}, text, {}, {});
  return text;
}

Long Disp_ErrorEx(const Variant& msg, const Variant& Butt, const Variant& LogFile, Long Flags,
                  const Variant& Prefix, const Text& Title, Text& RetBuffer, const Text& HelpFile,
                  const Text& HelpId) {
  Long result = kNoBoxResult;
  attempt([&] {
    const QVtError& record = error_state();
    if (!msg.is_missing()) {
      attempt([&] { RetBuffer = msg.to_text(); });
      end_line(RetBuffer);
    }
    Long buttons = asked_buttons(Butt, record.Buttons);
    const Text log_file = LogFile.is_missing() ? Text() : text_of(LogFile);
    RetBuffer += record.Description;
    end_line(RetBuffer);
    if (has(Flags, DE_SHORT)) {
      buttons |= kInformation;
    } else {
      append_record(RetBuffer, buttons, record);
    }
    buttons |= kToForeground;
    if (!has(Flags, DE_NOSHOW)) result = show(RetBuffer, buttons, Flags, Title, HelpFile, HelpId);
    if (!log_file.empty()) Log_Write(log_file, on_one_line(RetBuffer), Flags, Prefix);
  });
  error_state().Locked = False;
  err().forget_error();
  return result;
}

Long Disp_Error(const Variant& msg, const Variant& Butt, const Variant& LogFile, Long Flags,
                const Variant& Prefix, const Text& Title) {
  Text text;
  return Disp_ErrorEx(msg, Butt, LogFile, Flags, Prefix, Title, text, {}, {});
}

}  // namespace qv::frame
