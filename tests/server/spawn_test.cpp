// Spawn, with real programs that keep how they were called.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "server/client.h"
#include "server/late_form.h"
#include "server/process.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

// Spawn's arguments; what is not set is left out.
struct Call {
  std::wstring name;
  Value command = Value::missing();
  Value folder = Value::missing();
  Value window_state = Value::missing();
  Value no_lock = Value::missing();
  Value form = Value::missing();
  Value message = Value::missing();
  Value animation = Value::missing();
  Value program = Value::missing();
  Value action = Value::missing();
  Value stop = Value::missing();
};

Value object_value(IDispatch* object) {
  Value value;
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  if (object != nullptr) object->AddRef();
  return value;
}

Value null_value() {
  Value value;
  value.vt = VT_NULL;
  return value;
}

// An event of the system that a program waits for, with "until=NAME".
class Signal {
 public:
  Signal() : handle_(CreateEventW(nullptr, TRUE, FALSE, name().c_str())) {}
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  ~Signal() {
    give();
    CloseHandle(handle_);
  }
  static std::wstring name() { return L"qvrt_spawn_" + std::to_wstring(GetCurrentProcessId()); }
  void give() const { SetEvent(handle_); }

 private:
  HANDLE handle_;
};

// A real window whose timer does what the test wants.
class LiveWindow {
 public:
  explicit LiveWindow(std::function<void()> on_timer = [] {}) : on_timer_(std::move(on_timer)) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = handle;
    window_class.lpszClassName = L"QvLiveWindow";
    RegisterClassW(&window_class);
    window_ = CreateWindowExW(0, L"QvLiveWindow", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100,
                              100, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetTimer(window_, 1, 10, nullptr);
  }
  LiveWindow(const LiveWindow&) = delete;
  LiveWindow& operator=(const LiveWindow&) = delete;
  ~LiveWindow() { DestroyWindow(window_); }

  HWND handle() const { return window_; }
  int timers = 0;
  int paintings = 0;
  int posted = 0;

 private:
  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* self = reinterpret_cast<LiveWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, first, second);
    if (message == WM_TIMER) {
      ++self->timers;
      self->on_timer_();
      return 0;
    }
    if (message == WM_USER) ++self->posted;
    if (message == WM_PAINT) ++self->paintings;
    return DefWindowProcW(window, message, first, second);
  }

  std::function<void()> on_timer_;
  HWND window_ = nullptr;
};

class Spawn : public testing::Test {
 protected:
  Spawn() {
    global_->Reset_Error();
    CopyFileW((program_folder() + L"companion.exe").c_str(), recorder().c_str(), FALSE);
  }
  // What was not waited for must not outlive the folder.
  ~Spawn() override { wait_for_end(); }

  std::wstring recorder() const { return folder_.file(L"recorder.exe"); }
  std::wstring quoted_recorder() const { return L"\"" + recorder() + L"\""; }

  bool spawn(Call call) {
    String name(call.name);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(global_->Spawn(&name, &call.command, &call.folder, &call.window_state, &call.no_lock,
                             &call.form, &call.message, &call.animation, &call.program,
                             &call.action, &call.stop, &failed),
              S_OK);
    EXPECT_EQ(name.view(), call.name);
    return failed != VARIANT_FALSE;
  }
  bool stop() { return spawn({.name = L"", .stop = true}); }

  // The last value that the recorder has kept under a name.
  std::wstring recorded(const std::string& name, const wchar_t* log = L"recorder.log") const {
    const std::string text = folder_.read(log);
    const std::size_t at = text.rfind(name + "=");
    if (at == std::string::npos) return L"(nothing)";
    const std::size_t begin = at + name.size() + 1;
    const std::string value = text.substr(begin, text.find('\n', begin) - begin);
    return std::wstring(value.begin(), value.end());
  }
  // For a program that is not waited for.
  void wait_for_record() const {
    for (int tries = 0; tries < 2000 && !folder_.exists(L"recorder.log"); ++tries) Sleep(10);
  }
  // A program can't be deleted while it runs.
  void wait_for_end() const {
    for (int tries = 0; tries < 2000 && folder_.exists(L"recorder.exe"); ++tries) {
      if (DeleteFileW(recorder().c_str()) == FALSE) Sleep(10);
    }
  }

  LONG error_number() {
    LONG number = -1;
    global_->Error_Number(&number);
    return number;
  }
  LONG exit_code() {
    LONG code = -1;
    global_->Error_LastDLLError(&code);
    return code;
  }
  void expect_error(LONG number, const std::wstring& name, const std::wstring& reason) {
    String text;
    EXPECT_EQ(error_number(), number);
    global_->Error_Description(text.receive());
    EXPECT_EQ(std::wstring(text.view()),
              L"Impossibile eseguire il processo " + name + L".\r\n" + reason);
    global_->Error_Source(text.receive());
    EXPECT_EQ(text, L"KwRtLibMod.Spawn");
    global_->Reset_Error();
  }

  Pointer<_KwRtLib> global_ = create_global();
  TempFolder folder_;
};

TEST_F(Spawn, waits_for_the_program_and_keeps_its_exit_code) {
  for (const LONG code : {0L, 7L, 123456L, -1L}) {
    EXPECT_FALSE(spawn(
        {.name = recorder(), .command = (L"sleep=100 exit=" + std::to_wstring(code)).c_str()}));
    EXPECT_EQ(exit_code(), code);
  }
  EXPECT_EQ(error_number(), 0);
}

TEST_F(Spawn, the_exit_code_leaves_the_rest_of_the_record_alone) {
  Value number(20123);
  Value source(L"source");
  Value description(L"description");
  Value help_file(L"help");
  Value context(5);
  Value last(6);
  global_->Error_Replace(&number, &source, &description, &help_file, &context, &last);
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=9"}));
  EXPECT_EQ(exit_code(), 9);
  EXPECT_EQ(error_number(), 20123);
  String text;
  global_->Error_Source(text.receive());
  EXPECT_EQ(text, L"source");
  global_->Error_Description(text.receive());
  EXPECT_EQ(text, L"description");
  global_->Error_HelpFile(text.receive());
  EXPECT_EQ(text, L"help");
  LONG kept = 0;
  global_->Error_HelpContext(&kept);
  EXPECT_EQ(kept, 5);
}

TEST_F(Spawn, NoLock_returns_while_the_program_runs_and_keeps_no_exit_code) {
  const Signal signal;
  const std::wstring command = L"exit=9 until=" + Signal::name();
  EXPECT_FALSE(spawn({.name = recorder(), .command = command.c_str(), .no_lock = true}));
  wait_for_record();
  EXPECT_FALSE(DeleteFileW(recorder().c_str())) << "it runs";
  EXPECT_EQ(exit_code(), 0);
  EXPECT_EQ(error_number(), 0);
  signal.give();
  wait_for_end();
  EXPECT_EQ(exit_code(), 0);
}

TEST_F(Spawn, only_a_NoLock_that_equals_False_waits) {
  for (const Value& no_lock : {Value(false), Value(0), Value(0.0), Value()}) {
    EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3", .no_lock = no_lock}));
    EXPECT_EQ(exit_code(), 3);
    global_->Reset_Error();
  }
  for (const Value& no_lock : {Value(1), Value(L""), Value(L"False")}) {
    EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3", .no_lock = no_lock}));
    EXPECT_EQ(exit_code(), 0);
  }
}

TEST_F(Spawn, a_plain_name_takes_its_parameters_as_they_stand) {
  for (const wchar_t* command : {L"", L"a", L"a \"b c\"  d", L"a  "}) {
    EXPECT_FALSE(spawn({.name = recorder(), .command = command}));
    EXPECT_EQ(recorded("arguments"), command);
  }
  EXPECT_FALSE(spawn({.name = recorder()}));
  EXPECT_EQ(recorded("arguments"), L"");
}

TEST_F(Spawn, a_quoted_name_gives_what_follows_it_to_the_program) {
  EXPECT_FALSE(spawn({.name = quoted_recorder() + L"  one two"}));
  EXPECT_EQ(recorded("arguments"), L"one two");
  EXPECT_FALSE(spawn({.name = quoted_recorder() + L"one", .command = L"  first  "}));
  EXPECT_EQ(recorded("arguments"), L"first one");
  EXPECT_FALSE(spawn({.name = quoted_recorder(), .command = L"first"}));
  EXPECT_EQ(recorded("arguments"), L"first ");
  EXPECT_FALSE(spawn({.name = L"\"  " + recorder() + L"  \" one"}));
  EXPECT_EQ(recorded("arguments"), L"one") << "the name is trimmed";
}

TEST_F(Spawn, what_follows_a_quoted_name_is_cut_to_the_names_length) {
  const std::size_t length = recorder().size();
  const std::wstring long_text = std::wstring(length, L'x') + L"y";
  EXPECT_FALSE(spawn({.name = quoted_recorder() + L" " + long_text}));
  EXPECT_EQ(recorded("arguments"), std::wstring(length, L'x'));
  EXPECT_FALSE(spawn({.name = quoted_recorder() + L" " + long_text, .command = L"whole"}));
  EXPECT_EQ(recorded("arguments"), L"whole " + std::wstring(length, L'x'));
}

TEST_F(Spawn, a_quoted_name_without_its_second_quote_is_the_program_whole) {
  EXPECT_FALSE(spawn({.name = L"\"" + recorder()}));
  EXPECT_EQ(recorded("arguments"), L"");
  EXPECT_FALSE(spawn({.name = L"\"" + recorder(), .command = L"first"}));
  EXPECT_EQ(recorded("arguments"), L"first ") << "with a blank behind it";
}

TEST_F(Spawn, names_with_blanks_and_of_any_character_start) {
  for (const wchar_t* name : {L"with blank.exe", L"\x65E5\x0416.exe"}) {
    CopyFileW(recorder().c_str(), folder_.file(name).c_str(), FALSE);
    EXPECT_FALSE(spawn({.name = folder_.file(name), .command = L"exit=4"})) << name;
    EXPECT_EQ(exit_code(), 4);
    EXPECT_FALSE(spawn({.name = L"\"" + folder_.file(name) + L"\" exit=5"})) << name;
    EXPECT_EQ(exit_code(), 5);
  }
}

TEST_F(Spawn, the_program_starts_in_the_folder_given) {
  EXPECT_FALSE(spawn({.name = recorder(), .folder = folder_.path().c_str()}));
  EXPECT_EQ(recorded("folder") + L"\\", folder_.path());
  wchar_t current[1024];
  GetCurrentDirectoryW(1024, current);
  for (const Value& folder : {Value::missing(), Value(L"")}) {
    EXPECT_FALSE(spawn({.name = recorder(), .folder = folder}));
    EXPECT_EQ(recorded("folder"), current);
  }
}

TEST_F(Spawn, the_window_state_is_the_systems_show_command) {
  for (const int show : {2, 3, 7, 0}) {
    EXPECT_FALSE(spawn({.name = recorder(), .window_state = show}));
    EXPECT_EQ(recorded("show"), std::to_wstring(show));
  }
  EXPECT_FALSE(spawn({.name = recorder(), .window_state = L"3"}));
  EXPECT_EQ(recorded("show"), L"3");
  EXPECT_FALSE(spawn({.name = recorder()}));
  EXPECT_EQ(recorded("show"), L"1");
}

TEST_F(Spawn, variables_of_the_environment_are_put_in) {
  SetEnvironmentVariableW(L"QVRT_SPAWN", folder_.path().c_str());
  EXPECT_FALSE(spawn({.name = L"%QVRT_SPAWN%recorder.exe", .folder = L"%QVRT_SPAWN%"}));
  EXPECT_EQ(recorded("folder") + L"\\", folder_.path());
  SetEnvironmentVariableW(L"QVRT_SPAWN", nullptr);
}

TEST_F(Spawn, Message_AviFile_and_QVPrgObj_are_ignored) {
  EXPECT_FALSE(spawn({.name = recorder(),
                      .command = L"exit=2",
                      .message = null_value(),
                      .animation = null_value(),
                      .program = null_value()}));
  EXPECT_EQ(exit_code(), 2);
}

TEST_F(Spawn, a_missing_program_is_not_found) {
  const std::wstring name = folder_.file(L"missing.exe");
  EXPECT_TRUE(spawn({.name = name}));
  EXPECT_EQ(exit_code(), ERROR_FILE_NOT_FOUND);
  expect_error(20000, name, L"File non trovato.");
  EXPECT_TRUE(spawn({.name = folder_.file(L"missing\\missing.exe"), .no_lock = true}));
  expect_error(20000, folder_.file(L"missing\\missing.exe"), L"File non trovato.");
  EXPECT_TRUE(spawn({.name = L"\"" + name + L"\" parameters"}));
  expect_error(20000, L"\"" + name + L"\" parameters", L"File non trovato.");
}

TEST_F(Spawn, a_document_without_an_application_has_no_association) {
  folder_.write(L"document.qvnone", "x");
  EXPECT_TRUE(spawn({.name = folder_.file(L"document.qvnone")}));
  expect_error(20000, folder_.file(L"document.qvnone"), L"Nessuna associazione valida.");
}

TEST_F(Spawn, a_failure_without_a_text_of_its_own_shows_the_shells_code) {
  folder_.write(L"no_program.exe", "this is no program");
  EXPECT_TRUE(spawn({.name = folder_.file(L"no_program.exe")}));
  String text;
  global_->Error_Description(text.receive());
  EXPECT_NE(text.view().find(L"\r\nErrore di shell #"), std::wstring_view::npos)
      << std::wstring(text.view());
  EXPECT_EQ(error_number(), 20000);
}

TEST_F(Spawn, arguments_that_are_no_text_or_number_are_failures) {
  Call call{.name = recorder()};
  call.command = null_value();
  EXPECT_TRUE(spawn(call));
  expect_error(94, recorder(), L"Invalid use of Null");
  call = {.name = recorder(), .window_state = L"big"};
  EXPECT_TRUE(spawn(call));
  expect_error(13, recorder(), L"Type mismatch");
  call = {.name = recorder(), .no_lock = null_value()};
  EXPECT_TRUE(spawn(call));
  expect_error(94, recorder(), L"Invalid use of Null");
  EXPECT_FALSE(folder_.exists(L"recorder.log")) << "nothing was started";
}

// Documents, by a class that the test registers.
class SpawnDocument : public Spawn {
 protected:
  SpawnDocument() {
    folder_.write(L"document.qvspawn", "x");
    set(L".qvspawn", L"qvspawn.document");
    set(L"qvspawn.document\\shell\\open\\command", quoted_recorder() + L" open \"%1\" exit=4");
    set(L"qvspawn.document\\shell\\prova\\command", quoted_recorder() + L" prova \"%1\"");
  }
  ~SpawnDocument() override {
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L".qvspawn");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"qvspawn.document");
  }
  static void set(const std::wstring& key, const std::wstring& text) {
    RegSetValueW(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, text.c_str(),
                 static_cast<DWORD>(text.size()));
  }
  std::wstring document() const { return folder_.file(L"document.qvspawn"); }
};

TEST_F(SpawnDocument, opens_with_its_application_which_is_waited_for) {
  EXPECT_FALSE(spawn({.name = document()}));
  EXPECT_EQ(recorded("arguments"), L"open \"" + document() + L"\" exit=4");
  EXPECT_EQ(exit_code(), 4);
}

TEST_F(SpawnDocument, Action_is_the_shells_verb) {
  EXPECT_FALSE(spawn({.name = document(), .action = L"prova"}));
  EXPECT_EQ(recorded("arguments"), L"prova \"" + document() + L"\"");
  EXPECT_TRUE(spawn({.name = document(), .action = L"unknown"}));
  expect_error(20000, document(), L"Nessuna associazione valida.");
}

TEST_F(SpawnDocument, that_a_running_application_takes_over_is_a_failure_when_waited_for) {
  set(L"qvspawn.document\\shell\\open\\ddeexec", L"[open(%1)]");
  set(L"qvspawn.document\\shell\\open\\ddeexec\\application", L"QVRTSPAWN");
  set(L"qvspawn.document\\shell\\open\\ddeexec\\topic", L"System");
  Process application(L"companion.exe dde QVRTSPAWN");
  application.wait_for_output();
  EXPECT_TRUE(spawn({.name = document()}));
  expect_error(20000, document(), L"Il processo è terminato prima di idle.");
  EXPECT_FALSE(spawn({.name = document(), .no_lock = true}));
  EXPECT_EQ(error_number(), 0);
  TerminateProcess(application.handle(), 0);
  const std::wstring name = document();
  const std::string opened = "[open(" + std::string(name.begin(), name.end()) + ")]\n";
  EXPECT_EQ(application.output(), "ready\n" + opened + opened);
  EXPECT_EQ(folder_.read(L"recorder.log"), "(no such file)") << "no program was started for it";
}

TEST_F(Spawn, the_applications_windows_live_on_while_it_waits) {
  LiveWindow window;
  InvalidateRect(window.handle(), nullptr, TRUE);
  PostMessageW(window.handle(), WM_USER, 0, 0);
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"sleep=500"}));
  EXPECT_GT(window.timers, 2);
  EXPECT_GE(window.paintings, 1);
  EXPECT_EQ(window.posted, 1);
}

TEST_F(Spawn, StopProc_from_an_event_ends_the_wait_and_leaves_the_program_running) {
  const Signal signal;
  bool stopped = false;
  LiveWindow window([&] {
    if (stopped || !folder_.exists(L"recorder.log")) return;
    stopped = true;
    EXPECT_TRUE(stop());
  });
  EXPECT_FALSE(spawn({.name = recorder(), .command = (L"exit=9 until=" + Signal::name()).c_str()}));
  EXPECT_TRUE(stopped);
  EXPECT_EQ(exit_code(), 0) << "no exit code was kept";
  EXPECT_FALSE(DeleteFileW(recorder().c_str())) << "the program runs";
  EXPECT_EQ(error_number(), 0);
  signal.give();
  wait_for_end();
}

TEST_F(Spawn, StopProc_looks_at_no_other_argument) {
  LateForm form;
  Call call{.name = folder_.file(L"missing.exe"), .form = object_value(&form), .stop = true};
  call.command = null_value();
  EXPECT_TRUE(spawn(call));
  EXPECT_TRUE(form.calls.empty());
  EXPECT_EQ(error_number(), 0);
}

TEST_F(Spawn, StopProc_without_a_wait_does_nothing) {
  global_->Error_Lock();
  EXPECT_TRUE(stop());
  EXPECT_TRUE(stop());
  Value number(5);
  Value missing = Value::missing();
  global_->Error_Replace(&number, &missing, &missing, &missing, &missing, &missing);
  EXPECT_EQ(error_number(), 0) << "the record is locked still";
  global_->Error_Unlock();
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3"})) << "the next call waits";
  EXPECT_EQ(exit_code(), 3);
}

TEST_F(Spawn, StopProc_that_is_False_is_as_if_missing) {
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3", .stop = false}));
  EXPECT_EQ(exit_code(), 3);
  EXPECT_TRUE(spawn({.name = recorder(), .stop = null_value()}));
  expect_error(94, recorder(), L"Invalid use of Null");
}

TEST_F(Spawn, a_program_that_ends_with_259_is_waited_for_until_StopProc) {
  int ticks = 0;
  LiveWindow window([&] {
    if (ticks++ == 30) {
      EXPECT_TRUE(stop());
    }
  });
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=259"}));
  EXPECT_GT(ticks, 30);
  EXPECT_EQ(exit_code(), 0);
  wait_for_end();
}

TEST_F(Spawn, StopProc_ends_both_of_two_waits_within_one_another) {
  const Signal signal;
  const std::wstring until = L"exit=9 until=" + Signal::name();
  CopyFileW(recorder().c_str(), folder_.file(L"inner.exe").c_str(), FALSE);
  int inner_calls = 0;
  bool inner_failed = true;
  LiveWindow window([&] {
    if (!folder_.exists(L"recorder.log")) return;
    if (inner_calls++ == 0) {
      inner_failed = spawn({.name = folder_.file(L"inner.exe"), .command = until.c_str()});
    } else if (folder_.exists(L"inner.log")) {
      EXPECT_TRUE(stop());
    }
  });
  EXPECT_FALSE(spawn({.name = recorder(), .command = until.c_str()}));
  EXPECT_FALSE(inner_failed);
  EXPECT_GT(inner_calls, 1);
  EXPECT_EQ(exit_code(), 0);
  signal.give();
  wait_for_end();
}

TEST_F(Spawn, an_inner_wait_that_ends_by_itself_leaves_the_outer_one_waiting) {
  const Signal signal;
  CopyFileW(recorder().c_str(), folder_.file(L"inner.exe").c_str(), FALSE);
  int inner_calls = 0;
  LONG inner_code = 0;
  LiveWindow window([&] {
    if (!folder_.exists(L"recorder.log") || inner_calls++ > 0) return;
    EXPECT_FALSE(spawn({.name = folder_.file(L"inner.exe"), .command = L"exit=5"}));
    inner_code = exit_code();
    signal.give();
  });
  EXPECT_FALSE(spawn({.name = recorder(), .command = (L"exit=9 until=" + Signal::name()).c_str()}));
  EXPECT_EQ(inner_code, 5);
  EXPECT_EQ(exit_code(), 9);
}

// The caller's form.
class SpawnForm : public Spawn {
 protected:
  using Calls = std::vector<std::wstring>;

  Call with_form(const std::wstring& name) {
    return {.name = name, .command = L"exit=3", .form = object_value(&form_)};
  }
  void expect_restored() {
    EXPECT_EQ(form_.window_state, 2);
    EXPECT_TRUE(form_.enabled);
    EXPECT_EQ(form_.references, 1U);
  }
  static Calls all_calls() {
    return {L"get WindowState",   L"get Enabled",      L"put Enabled False", L"put WindowState 1",
            L"put WindowState 2", L"put Enabled True", L"SetFocus"};
  }

  LateForm form_;
};

TEST_F(SpawnForm, is_disabled_and_minimised_and_then_put_back) {
  int state_meanwhile = 0;
  bool enabled_meanwhile = true;
  LiveWindow window([&] {
    state_meanwhile = static_cast<int>(form_.window_state);
    enabled_meanwhile = form_.enabled;
  });
  Call call = with_form(recorder());
  call.command = L"sleep=200 exit=3";
  EXPECT_FALSE(spawn(call));
  EXPECT_EQ(state_meanwhile, 1);
  EXPECT_FALSE(enabled_meanwhile);
  EXPECT_EQ(form_.calls, all_calls());
  EXPECT_EQ(exit_code(), 3);
}

TEST_F(SpawnForm, is_put_back_at_once_with_NoLock) {
  Call call = with_form(recorder());
  call.no_lock = true;
  EXPECT_FALSE(spawn(call));
  EXPECT_EQ(form_.calls, all_calls());
}

TEST_F(SpawnForm, is_put_back_after_a_failure) {
  const std::wstring name = folder_.file(L"missing.exe");
  EXPECT_TRUE(spawn(with_form(name)));
  EXPECT_EQ(form_.calls, all_calls());
  expect_error(20000, name, L"File non trovato.");
}

TEST_F(SpawnForm, a_disabled_form_stays_disabled) {
  form_.enabled = false;
  form_.window_state = 0;
  EXPECT_FALSE(spawn(with_form(recorder())));
  EXPECT_FALSE(form_.enabled);
  EXPECT_EQ(form_.window_state, 0);
}

TEST_F(SpawnForm, is_put_back_as_far_as_it_was_read_when_it_raises_an_error) {
  const struct {
    const wchar_t* failing;
    Calls calls;
  } kFailures[] = {
      {L"get WindowState", {L"get WindowState", L"SetFocus"}},
      {L"get Enabled", {L"get WindowState", L"get Enabled", L"put WindowState 2", L"SetFocus"}},
      {L"put Enabled",
       {L"get WindowState", L"get Enabled", L"put Enabled False", L"put WindowState 2",
        L"put Enabled True", L"SetFocus"}},
      {L"put WindowState",
       {L"get WindowState", L"get Enabled", L"put Enabled False", L"put WindowState 1",
        L"put WindowState 2", L"put Enabled True", L"SetFocus"}},
  };
  for (const auto& [failing, calls] : kFailures) {
    form_.calls.clear();
    form_.failing = failing;
    EXPECT_TRUE(spawn(with_form(recorder()))) << failing;
    EXPECT_EQ(form_.calls, calls) << failing;
    expect_restored();
    expect_error(1234, recorder(), L"raised by the form");
    form_.failing.clear();
  }
  EXPECT_FALSE(folder_.exists(L"recorder.log")) << "nothing was started";
}

TEST_F(SpawnForm, an_error_of_SetFocus_is_passed_over) {
  form_.failing = L"SetFocus";
  EXPECT_FALSE(spawn(with_form(recorder())));
  EXPECT_EQ(error_number(), 0);
  EXPECT_EQ(exit_code(), 3);
  expect_restored();
}

TEST_F(SpawnForm, nothing_and_a_number_are_no_forms) {
  Call call{.name = recorder()};
  call.form = object_value(nullptr);
  EXPECT_TRUE(spawn(call));
  expect_error(91, recorder(), L"Object variable or With block variable not set");
  call.form = Value(5);
  EXPECT_TRUE(spawn(call));
  expect_error(424, recorder(), L"Object required");
}

TEST_F(Spawn, the_record_is_unlocked_at_the_end) {
  global_->Error_Lock();
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3"}));
  EXPECT_EQ(exit_code(), 0) << "it was locked when the exit code came";
  EXPECT_FALSE(spawn({.name = recorder(), .command = L"exit=3"}));
  EXPECT_EQ(exit_code(), 3);
  global_->Error_Lock();
  EXPECT_TRUE(spawn({.name = folder_.file(L"missing.exe")}));
  EXPECT_EQ(error_number(), 0);
  EXPECT_TRUE(spawn({.name = folder_.file(L"missing.exe")}));
  EXPECT_EQ(error_number(), 20000);
}

}  // namespace
}  // namespace qv::tests
