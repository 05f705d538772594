// NotifyFileChange: folders that another process changes, and events that come of it.
#include <functional>
#include <memory>
#include <string>

#include "server/client.h"
#include "server/process.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

constexpr LONG kFileName = 1;
constexpr LONG kDirName = 2;
constexpr LONG kAttributes = 4;
constexpr LONG kSize = 8;
constexpr LONG kLastWrite = 16;

// Takes the events and does with each what the test asks for.
class Sink final : public IDispatch {
 public:
  using Handler = std::function<HRESULT(std::wstring path, LONG filter, VARIANT_BOOL& cancel)>;

  explicit Sink(Handler handler) : handler_(std::move(handler)) {}
  int events = 0;
  // What the handler raises, where it gives DISP_E_EXCEPTION.
  LONG error = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
                       IsEqualIID(id, DIID___QvtNotify);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives on the stack
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO* exception, UINT*) override {
    ++events;
    EXPECT_EQ(id, DISPID_QvtNotify_FileChangeEvent);
    EXPECT_EQ(parameters->cArgs, 3U);
    // In reverse.
    VARIANT& cancel = parameters->rgvarg[0];
    const VARIANT& filter = parameters->rgvarg[1];
    const VARIANT& path = parameters->rgvarg[2];
    EXPECT_EQ(cancel.vt, VT_BYREF | VT_BOOL);
    EXPECT_EQ(filter.vt, VT_I4);
    EXPECT_EQ(path.vt, VT_BSTR);
    EXPECT_EQ(*cancel.pboolVal, VARIANT_FALSE);
    const HRESULT result = handler_(std::wstring(path.bstrVal, SysStringLen(path.bstrVal)),
                                    filter.lVal, *cancel.pboolVal);
    if (result == DISP_E_EXCEPTION) {
      exception->scode = error_result(error);
      exception->bstrSource = SysAllocString(L"the handler");
      exception->bstrDescription = SysAllocString(L"raised by the handler");
    }
    return result;
  }

 private:
  Handler handler_;
};

Sink cancelling_sink() {
  return Sink([](const std::wstring&, LONG, VARIANT_BOOL& cancel) {
    cancel = VARIANT_TRUE;
    return S_OK;
  });
}

// Connects a sink, which stands on the stack, for as long as this lives.
class Connection {
 public:
  Connection(const Pointer<_QvtNotify>& source, Sink& sink) {
    const auto container = Pointer<IConnectionPointContainer>::from(source.get());
    EXPECT_EQ(container->FindConnectionPoint(DIID___QvtNotify, point_.receive()), S_OK);
    EXPECT_EQ(point_->Advise(&sink, &cookie_), S_OK);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { EXPECT_EQ(point_->Unadvise(cookie_), S_OK); }

 private:
  Pointer<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

class ChangeNotification : public testing::Test {
 protected:
  ChangeNotification() {
    global_->Reset_Error();
    folder_.write(L"there", "x");
  }

  bool watch(std::wstring_view path, LONG filter = kLastWrite, bool subfolders = false,
             LONG time_out_ms = 20000) {
    String text(path);
    VARIANT_BOOL with_subfolders = subfolders ? VARIANT_TRUE : VARIANT_FALSE;
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(notify_->NotifyFileChange(&text, &with_subfolders, &filter, &time_out_ms, &failed),
              S_OK);
    EXPECT_EQ(text.view(), path);
    return failed != VARIANT_FALSE;
  }
  // Another process that changes the folder until the result is gone.
  std::unique_ptr<Process> start_changing(const wchar_t* kind) const {
    auto changer =
        std::make_unique<Process>(L"companion.exe change " + folder_.path() + L" " + kind);
    changer->wait_for_output();
    return changer;
  }
  LONG error_number() {
    LONG number = -1;
    global_->Error_Number(&number);
    return number;
  }
  LONG system_error() {
    LONG number = -1;
    global_->Error_LastDLLError(&number);
    return number;
  }
  std::wstring system_text(LONG code) {
    String text;
    global_->SystemError(&code, &text);
    return std::wstring(text.view());
  }
  void expect_error(LONG number, std::wstring_view description) {
    String actual_description;
    String source;
    EXPECT_EQ(error_number(), number);
    global_->Error_Description(&actual_description);
    EXPECT_EQ(actual_description.view(), description);
    global_->Error_Source(&source);
    EXPECT_EQ(source, L"QvtNotify.NotifyFileChange");
    global_->Reset_Error();
  }
  // The system gives the lowest number that is free.
  static std::intptr_t next_handle() {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<std::intptr_t>(event);
  }

  Pointer<_KwRtLib> global_ = create_global();
  Pointer<_QvtNotify> notify_ = create<_QvtNotify>(CLSID_QvtNotify);
  TempFolder folder_;
};

TEST_F(ChangeNotification, a_change_by_another_process_raises_the_event_with_the_calls_arguments) {
  std::wstring path;
  LONG filter = 0;
  Sink sink([&](std::wstring given_path, LONG given_filter, VARIANT_BOOL& cancel) {
    path = std::move(given_path);
    filter = given_filter;
    cancel = VARIANT_TRUE;
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  EXPECT_FALSE(watch(folder_.path()));
  EXPECT_EQ(sink.events, 1);
  EXPECT_EQ(path, folder_.path());
  EXPECT_EQ(filter, kLastWrite);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ChangeNotification, the_watch_goes_on_until_a_handler_sets_Cancel) {
  int left = 3;
  Sink sink([&](const std::wstring&, LONG, VARIANT_BOOL& cancel) {
    if (--left == 0) cancel = VARIANT_TRUE;
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  EXPECT_FALSE(watch(folder_.path()));
  EXPECT_EQ(sink.events, 3);
}

TEST_F(ChangeNotification, arguments_may_be_left_out) {
  Sink sink([](const std::wstring&, LONG filter, VARIANT_BOOL& cancel) {
    EXPECT_EQ(filter, kLastWrite);
    cancel = VARIANT_TRUE;
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  String path(folder_.path());
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(notify_->NotifyFileChange(&path, nullptr, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(sink.events, 1);
}

TEST_F(ChangeNotification, only_the_kinds_of_change_asked_for_raise_the_event) {
  const struct {
    const wchar_t* kind;
    LONG filter;
    LONG other;
  } kKinds[] = {
      {L"write", kLastWrite, kFileName},
      {L"write", kSize, kDirName},
      {L"create", kFileName, kDirName},
      {L"folder", kDirName, kFileName},
      {L"attributes", kAttributes, kFileName | kDirName},
  };
  Sink sink = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  for (const auto& [kind, filter, other] : kKinds) {
    sink.events = 0;
    const auto changer = start_changing(kind);
    EXPECT_FALSE(watch(folder_.path(), filter)) << kind;
    EXPECT_EQ(sink.events, 1) << kind;
    EXPECT_TRUE(watch(folder_.path(), other, false, 150)) << kind;
    EXPECT_EQ(sink.events, 1) << kind;
    expect_error(20000, L"Unexpected error.");
  }
}

TEST_F(ChangeNotification, subfolders_are_watched_when_asked_for) {
  Sink sink = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"below");
  EXPECT_TRUE(watch(folder_.path(), kLastWrite, false, 200));
  EXPECT_EQ(sink.events, 0);
  EXPECT_FALSE(watch(folder_.path(), kLastWrite, true));
  EXPECT_EQ(sink.events, 1);
}

TEST_F(ChangeNotification, a_folder_that_is_missing_fails_with_the_systems_text) {
  Sink sink = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  EXPECT_TRUE(watch(folder_.file(L"missing")));
  EXPECT_EQ(sink.events, 0);
  EXPECT_EQ(system_error(), ERROR_FILE_NOT_FOUND);
  expect_error(20000, system_text(ERROR_FILE_NOT_FOUND));
}

TEST_F(ChangeNotification, a_filter_of_nothing_fails_with_the_systems_text) {
  EXPECT_TRUE(watch(folder_.path(), 0));
  EXPECT_EQ(system_error(), ERROR_INVALID_PARAMETER);
  expect_error(20000, system_text(ERROR_INVALID_PARAMETER));
}

TEST_F(ChangeNotification, time_out_0_without_a_change_ends_at_once) {
  Sink sink = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  EXPECT_TRUE(watch(folder_.path(), kLastWrite, false, 0));
  EXPECT_EQ(sink.events, 0);
  expect_error(20000, L"Unexpected error.");
}

TEST_F(ChangeNotification, the_time_out_limits_the_time_between_two_changes) {
  Sink sink([](const std::wstring&, LONG, VARIANT_BOOL&) { return S_OK; });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  Sink ender([&, left = 5](const std::wstring&, LONG, VARIANT_BOOL&) mutable {
    if (--left == 0) TerminateProcess(changer->handle(), 0);
    return S_OK;
  });
  const Connection ender_connection(notify_, ender);
  EXPECT_TRUE(watch(folder_.path(), kLastWrite, false, 2000));
  EXPECT_GE(sink.events, 5);
  expect_error(20000, L"Unexpected error.");
}

TEST_F(ChangeNotification, several_changes_between_two_waits_are_not_an_event_each) {
  constexpr int kChanges = 10;
  Sink sink([&, first = true](const std::wstring&, LONG, VARIANT_BOOL&) mutable {
    if (std::exchange(first, false)) {
      for (int i = 0; i < kChanges; ++i)
        folder_.write(L"there", std::string(static_cast<std::size_t>(i) + 1, 'x'));
    }
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  Sink ender([&](const std::wstring&, LONG, VARIANT_BOOL&) {
    TerminateProcess(changer->handle(), 0);
    WaitForSingleObject(changer->handle(), INFINITE);
    return S_OK;
  });
  const Connection ender_connection(notify_, ender);
  EXPECT_TRUE(watch(folder_.path(), kLastWrite, false, 500));
  EXPECT_GE(sink.events, 1);
  EXPECT_LE(sink.events, kChanges);
  expect_error(20000, L"Unexpected error.");
}

TEST_F(ChangeNotification, an_error_of_the_handler_ends_the_watch_as_a_failure) {
  Sink sink([](const std::wstring&, LONG, VARIANT_BOOL&) { return DISP_E_EXCEPTION; });
  sink.error = 13;
  Sink second = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  const Connection second_connection(notify_, second);
  const auto changer = start_changing(L"write");
  const auto handle = next_handle();
  EXPECT_TRUE(watch(folder_.path()));
  EXPECT_EQ(next_handle(), handle) << "the watch has been closed";
  EXPECT_EQ(sink.events, 1);
  EXPECT_EQ(second.events, 0);
  expect_error(13, L"raised by the handler");
}

TEST_F(ChangeNotification, a_failed_handler_that_tells_no_error_is_an_error_too) {
  Sink sink([](const std::wstring&, LONG, VARIANT_BOOL&) { return E_OUTOFMEMORY; });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  EXPECT_TRUE(watch(folder_.path()));
  expect_error(7, L"Out of memory");
}

TEST_F(ChangeNotification, sinks_without_a_handler_are_passed_over) {
  Sink without([](const std::wstring&, LONG, VARIANT_BOOL&) { return DISP_E_MEMBERNOTFOUND; });
  Sink unwritten([](const std::wstring&, LONG, VARIANT_BOOL&) { return E_NOTIMPL; });
  Sink sink = cancelling_sink();
  const Connection without_connection(notify_, without);
  const Connection unwritten_connection(notify_, unwritten);
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  EXPECT_FALSE(watch(folder_.path()));
  EXPECT_EQ(without.events, 1);
  EXPECT_EQ(unwritten.events, 1);
  EXPECT_EQ(sink.events, 1);
  EXPECT_EQ(error_number(), 0);
}

TEST_F(ChangeNotification, without_a_sink_changes_are_waited_for_all_the_same) {
  const auto changer = start_changing(L"attributes");
  EXPECT_TRUE(watch(folder_.path(), kFileName, false, 100));
  expect_error(20000, L"Unexpected error.");
}

TEST_F(ChangeNotification, a_watch_whose_handle_is_gone_fails_with_the_systems_text) {
  const auto changer = start_changing(L"write");
  const auto handle = next_handle();
  Sink sink([&](const std::wstring&, LONG, VARIANT_BOOL&) {
    EXPECT_TRUE(CloseHandle(reinterpret_cast<HANDLE>(handle)));
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  EXPECT_TRUE(watch(folder_.path()));
  EXPECT_EQ(sink.events, 1);
  EXPECT_EQ(system_error(), ERROR_INVALID_HANDLE);
  expect_error(20000, system_text(ERROR_INVALID_HANDLE));
}

TEST_F(ChangeNotification, the_handle_is_closed_at_the_end) {
  Sink sink = cancelling_sink();
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  const auto handle = next_handle();
  EXPECT_FALSE(watch(folder_.path()));
  EXPECT_EQ(next_handle(), handle);
  EXPECT_TRUE(watch(folder_.path(), kFileName, false, 0));
  EXPECT_EQ(next_handle(), handle);
}

TEST_F(ChangeNotification, a_handler_may_watch_another_folder_meanwhile) {
  TempFolder other;
  bool inner = false;
  Sink sink([&](const std::wstring& path, LONG, VARIANT_BOOL& cancel) {
    EXPECT_EQ(path, folder_.path());
    inner = watch(other.path(), kLastWrite, false, 0);
    cancel = VARIANT_TRUE;
    return S_OK;
  });
  const Connection sink_connection(notify_, sink);
  const auto changer = start_changing(L"write");
  EXPECT_FALSE(watch(folder_.path()));
  EXPECT_TRUE(inner);
  expect_error(20000, L"Unexpected error.");
}

TEST_F(ChangeNotification, no_message_is_handled_while_the_thread_waits) {
  MSG message;
  PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);  // makes the queue
  ASSERT_TRUE(PostThreadMessageW(GetCurrentThreadId(), WM_USER, 0, 0));
  EXPECT_TRUE(watch(folder_.path(), kLastWrite, false, 50));
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_REMOVE)) << "it still waits";
  expect_error(20000, L"Unexpected error.");
}

}  // namespace
}  // namespace qv::tests
