// The display of errors as a typed client uses it.
#pragma once

#include <string>

#include "server/client.h"
#include "server/temp_folder.h"

namespace qv::tests {

inline constexpr LONG kNoShow = 1;
inline constexpr LONG kTime = 2;
inline constexpr LONG kCrc = 4;
inline constexpr LONG kNoSave = 8;
inline constexpr LONG kShort = 16;

class ErrorDisplay : public testing::Test {
 protected:
  ~ErrorDisplay() override {
    global->Error_Unlock();
    // An empty title and style for the next test: only the explicit mode clears them.
    set(0, L"", L"", 0, L"", 0);
  }

  void set(LONG number, const wchar_t* source, const wchar_t* description, LONG last_dll_error = 0,
           const wchar_t* caption = L"", LONG buttons = 0) {
    Value fields[] = {Value(number), Value(source), Value(description), Value(last_dll_error),
                      Value(caption)};
    LONG flags = 8;
    global->Error_SetEx(&fields[0], &fields[1], &fields[2], nullptr, nullptr, &fields[3], &flags,
                        &fields[4], &buttons);
  }

  std::wstring system_error(LONG code) {
    String text;
    EXPECT_EQ(global->SystemError(&code, &text), S_OK);
    return std::wstring(text.view());
  }

  std::wstring message(Value msg = Value::missing(), LONG flags = 0) {
    String text;
    EXPECT_EQ(global->Error_Message(&msg, &flags, &text), S_OK);
    return std::wstring(text.view());
  }

  LONG display(LONG flags, Value msg = Value::missing(), Value buttons = Value::missing(),
               const wchar_t* given_title = L"") {
    Value log = Value::missing();
    Value prefix = Value::missing();
    String title(given_title);
    LONG result = -1;
    EXPECT_EQ(global->Disp_Error(&msg, &buttons, &log, &flags, &prefix, &title, &result), S_OK);
    return result;
  }

  LONG display_ex(LONG flags, String& buffer, Value msg = Value::missing(),
                  const wchar_t* help_file = L"", const wchar_t* help_id = L"",
                  const wchar_t* log_file = nullptr) {
    Value buttons = Value::missing();
    Value log = log_file != nullptr ? Value(log_file) : Value::missing();
    Value prefix(L"P");
    String title(L"t");
    String file(help_file);
    String id(help_id);
    LONG result = -1;
    EXPECT_EQ(global->Disp_ErrorEx(&msg, &buttons, &log, &flags, &prefix, &title, &buffer, &file,
                                   &id, &result),
              S_OK);
    return result;
  }

  void log(const std::wstring& file, const wchar_t* msg, LONG flags,
           Value prefix = Value::missing()) {
    String name(file);
    String text(msg);
    EXPECT_EQ(global->Log_Write(&name, text, &flags, &prefix), S_OK);
  }

  bool is_locked() {
    set(77, L"probe", L"");
    LONG number = 0;
    global->Error_Number(&number);
    return number != 77;
  }

  Pointer<_KwRtLib> global = create_global();
  TempFolder folder;
  std::wstring path = folder.file(L"test.log");
};

}  // namespace qv::tests
