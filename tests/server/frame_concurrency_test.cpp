// Many threads that are the library's first users at once, and loading and unloading while events
// run.
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "server/frame_random_calls.h"
#include "server/temp_folder.h"
#include "server/zip_events.h"

// constants.h needs Automation's types before it.
#include "constants.h"

namespace qv::tests {
namespace {

// Results that need tables: of members' names, of the code page, of checksums, of characters.
struct Results {
  DISPID number_of_name = 0;
  SHORT crc = 0;
  LONG crc_32 = 0;
  std::wstring key;
  std::wstring token;
  friend bool operator==(const Results&, const Results&) = default;
};

Results results_of(_KwRtLib* global) {
  Results results;
  auto* name = const_cast<wchar_t*>(L"pkCrc");
  EXPECT_EQ(global->GetIDsOfNames(IID{}, &name, 1, 0, &results.number_of_name), S_OK);
  String bytes(L"123456789\u20AC\u0152");
  EXPECT_EQ(global->CRC(&bytes, nullptr, &results.crc), S_OK);
  LONG start = -1;
  EXPECT_EQ(global->PkCRC(&bytes, &start, &results.crc_32), S_OK);
  String key(L"@m@<n>\u00E9\u00C0 z");
  using namespace KWZSTR_Constants;
  SHORT flags = SRT_MASK | SRT_UCASE | SRT_PRIMARY;
  String table;
  EXPECT_EQ(global->Key_Sort(&key, &flags, &table), S_OK);
  results.key = key.view();
  String source(L"uno,due,tre");
  String separators(L",");
  LONG number = 2;
  String token;
  EXPECT_EQ(global->Get_Token(&source, &separators, &number, &token), S_OK);
  results.token = token.view();
  return results;
}

// Runs the bodies at once, each in an apartment of its own.
void at_once(int count, const std::function<void(int)>& body) {
  const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&, i] {
      CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
      WaitForSingleObject(start, INFINITE);
      body(i);
      CoUninitialize();
    });
  }
  SetEvent(start);
  for (std::thread& thread : threads) thread.join();
  CloseHandle(start);
}

// A copy, because the registered file stays loaded in this process.
class Frame_Concurrency : public testing::Test {
 protected:
  void SetUp() override {
    path_ = folder_.file(L"copy.dll");
    ASSERT_NE(CopyFileW(server_path().c_str(), path_.c_str(), FALSE), FALSE);
  }
  void TearDown() override { EXPECT_EQ(GetModuleHandleW(path_.c_str()), nullptr); }

  TempFolder folder_;
  std::wstring path_;
};

TEST_F(Frame_Concurrency, first_results_are_the_same_on_all_threads) {
  const Results expected = results_of(create_global().get());
  EXPECT_EQ(expected.token, L"due");
  for (int round = 0; round < 20 && !HasFailure(); ++round) {
    const EntryPoints entry_points(path_);
    std::vector<Results> results(8);
    at_once(8, [&](int i) {
      results[static_cast<std::size_t>(i)] =
          results_of(entry_points.create<_KwRtLib>(CLSID_KwRtLib).get());
    });
    for (const Results& found : results) EXPECT_TRUE(found == expected);
    EXPECT_EQ(entry_points.can_unload_now(), S_OK);
  }
}

TEST_F(Frame_Concurrency, every_class_is_made_and_described_first_by_several_threads) {
  const auto classes = library_classes();
  for (int round = 0; round < 5 && !HasFailure(); ++round) {
    const EntryPoints entry_points(path_);
    at_once(4, [&](int i) {
      // Two threads go up the list, two down, so that they meet at each class from both sides.
      for (std::size_t n = 0; n < classes.size(); ++n) {
        const LibraryClass& description = classes[i % 2 == 0 ? n : classes.size() - 1 - n];
        const auto object = entry_points.create<IDispatch>(description.class_id);
        Pointer<ITypeInfo> info;
        EXPECT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
        DISPID id = 0;
        auto* name = const_cast<wchar_t*>(L"no_such_member");
        EXPECT_EQ(object->GetIDsOfNames(IID{}, &name, 1, 0, &id), DISP_E_UNKNOWNNAME);
      }
    });
    EXPECT_EQ(entry_points.can_unload_now(), S_OK);
  }
}

TEST_F(Frame_Concurrency, every_member_is_called_first_by_several_threads) {
  const EntryPoints entry_points(path_);
  at_once(3, [&](int i) { call_everything(entry_points, static_cast<unsigned>(i) + 1, 2); });
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

class Frame_ConcurrencyOfEvents : public Frame_Concurrency {
 protected:
  void SetUp() override {
    Frame_Concurrency::SetUp();
    folder_.write(L"a.txt", std::string(200000, 'a'));
  }
  // FileZip of that file by the object.
  HRESULT zip(_ZipFile* object, VARIANT_BOOL& failed) {
    Value source(std::wstring_view(folder_.file(L"a.txt")));
    String target(folder_.file(L"a.kwc"));
    return object->FileZip(&source, &target, nullptr, nullptr, &failed);
  }
};

TEST_F(Frame_ConcurrencyOfEvents, the_library_may_be_loaded_used_and_let_go_meanwhile) {
  int events = 0;
  {
    const EntryPoints entry_points(path_);
    {
      const auto object = entry_points.create<_ZipFile>(CLSID_ZipFile);
      const ZipEvents sink(object.get(), [&](const ZipEvent&) {
        ++events;
        at_once(3, [&](int) {
          const EntryPoints again(path_);
          EXPECT_EQ(results_of(again.create<_KwRtLib>(CLSID_KwRtLib).get()).token, L"due");
        });
        CoFreeUnusedLibrariesEx(0, 0);
        EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
        return false;
      });
      VARIANT_BOOL failed = VARIANT_TRUE;
      EXPECT_EQ(zip(object.get(), failed), S_OK);
      EXPECT_EQ(failed, VARIANT_FALSE);
    }
    EXPECT_EQ(entry_points.can_unload_now(), S_OK);
  }
  EXPECT_GE(events, 7);
}

TEST_F(Frame_ConcurrencyOfEvents, several_threads_have_events_at_once) {
  const EntryPoints entry_points(path_);
  std::vector<TempFolder> folders(4);
  for (const TempFolder& folder : folders) folder.write(L"a.txt", std::string(200000, 'a'));
  std::vector<std::vector<ZipEvent>> told(folders.size());
  at_once(static_cast<int>(folders.size()), [&](int i) {
    const auto n = static_cast<std::size_t>(i);
    const auto object = entry_points.create<_ZipFile>(CLSID_ZipFile);
    const ZipEvents sink(object.get());
    Value source(std::wstring_view(folders[n].file(L"a.txt")));
    String target(folders[n].file(L"a.kwc"));
    VARIANT_BOOL failed = VARIANT_TRUE;
    EXPECT_EQ(object->FileZip(&source, &target, nullptr, nullptr, &failed), S_OK);
    EXPECT_EQ(failed, VARIANT_FALSE);
    told[n] = sink.told();
  });
  EXPECT_GE(told[0].size(), 7U);
  for (const auto& events : told) EXPECT_TRUE(events == told[0]);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

// A sink that keeps nothing of its source.
class LoneSink final : public IDispatch {
 public:
  explicit LoneSink(std::function<void()> action) : action_(std::move(action)) {}
  ULONG references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) ++references;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }  // lives on the stack
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    action_();
    return S_OK;
  }

 private:
  std::function<void()> action_;
};

// The call holds its object, and the object the library.
TEST_F(Frame_ConcurrencyOfEvents, a_handler_may_let_the_object_go) {
  const EntryPoints entry_points(path_);
  auto object = entry_points.create<_ZipFile>(CLSID_ZipFile);
  int events = 0;
  LoneSink sink([&] {
    ++events;
    object = {};
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(entry_points.can_unload_now(), S_FALSE);
  });
  {
    Pointer<IConnectionPoint> point;
    ASSERT_EQ(Pointer<IConnectionPointContainer>::from(object.get())
                  ->FindConnectionPoint(DIID___ZipFile, point.receive()),
              S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  }
  VARIANT_BOOL failed = VARIANT_TRUE;
  EXPECT_EQ(zip(object.get(), failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_GE(events, 7);
  EXPECT_FALSE(object);
  EXPECT_EQ(sink.references, 1U);
  EXPECT_EQ(entry_points.can_unload_now(), S_OK);
}

}  // namespace
}  // namespace qv::tests
