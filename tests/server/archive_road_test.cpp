// A request's whole way through the library: from a list of files to an archive with its events,
// and from a file that can't be opened to the box that tells of it.
#include "server/archive_fixture.h"
#include "server/box_presser.h"
#include "server/zip_events.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;

class ArchiveRoad : public ArchiveTest {
 protected:
  bool zip_list(const Pointer<_ZipFile>& zipper, const std::vector<std::wstring>& names) {
    Value source = sources(names, 1);
    String target(path(L"a.kwc"));
    String parent(path(L""));
    LONG flags = 3;
    VARIANT_BOOL failed = VARIANT_FALSE;
    EXPECT_EQ(zipper->FileZip(&source, &target, &parent, &flags, &failed), S_OK);
    return failed != VARIANT_FALSE;
  }
  // Shows the record in a box, answers it, and gives its text, without the last line if that tells
  // the system's last error: it stays from whatever call of the process had one.
  std::wstring displayed() {
    Value missing = Value::missing();
    LONG flags = 0;
    String title(L"Archivio");
    LONG button = 0;
    BoxPresser presser(IDOK);
    EXPECT_EQ(global_->Disp_Error(&missing, &missing, &missing, &flags, &missing, &title, &button),
              S_OK);
    presser.finish();
    EXPECT_EQ(button, IDOK);
    EXPECT_EQ(presser.title(), L"Archivio");
    EXPECT_TRUE(presser.shows_icon(reinterpret_cast<const wchar_t*>(IDI_ERROR)));
    const std::wstring text = presser.text();
    return text.substr(0, text.find(L"\r\n[DLL:"));
  }
  void SetUp() override {
    ArchiveTest::SetUp();
    wchar_t system[kLongestPath];
    GetSystemDirectoryW(system, kLongestPath);
    CopyFileW((system + L"\\kernel32.dll"s).c_str(), path(L"k.dll").c_str(), FALSE);
    make_file(L"a.txt", wordy_bytes(40000));
    make_file(L"b.bin", noise_bytes(100));
  }
};

TEST_F(ArchiveRoad, list_of_files_becomes_an_archive_with_progress_and_comes_back) {
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  LONG last = 0;
  bool is_rising = true;
  ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    const LONG now = event.arguments[0] * 1000 + event.arguments[1];
    is_rising = is_rising && now >= last;
    last = now;
    return false;
  });
  ASSERT_FALSE(zip_list(zipper, {L"k.dll", L"a.txt", L"b.bin"}));
  EXPECT_TRUE(is_rising);
  EXPECT_EQ(last, 3100);

  const auto list = create<_kwCollection>(CLSID_kwCollection);
  _kwCollection* variable = list.get();
  String source(path(L"a.kwc"));
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(global_->FileUnzipInfo(&source, &variable, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  Value index(1);
  Value item;
  ASSERT_EQ(list->get_Item(&index, &item), S_OK);
  const auto program = Pointer<_QvtFileInfo>::from(item.pdispVal);
  LONG upper = 0;
  LONG lower = 0;
  program->get_MajVer(&upper);
  program->get_MinVer(&lower);
  String name(path(L"k.dll"));
  LONG numbers[5] = {};
  ASSERT_EQ(global_->GetFileVersion(&name, &numbers[0], &numbers[1], &numbers[2], &numbers[3],
                                    &numbers[4], &failed),
            S_OK);
  EXPECT_NE(upper, 0);
  EXPECT_EQ(upper, numbers[3]);
  EXPECT_EQ(lower, numbers[4]);

  ASSERT_FALSE(unzip(3));
  EXPECT_EQ(contents(L"out\\k.dll"), contents(L"k.dll"));
  EXPECT_EQ(contents(L"out\\a.txt"), wordy_bytes(40000));
  EXPECT_EQ(contents(L"out\\b.bin"), noise_bytes(100));
}

TEST_F(ArchiveRoad, source_that_cannot_be_opened_is_told_in_a_box) {
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  ZipEvents events(zipper.get(), [&](const ZipEvent& event) {
    if (event.arguments[0] == 2) DeleteFileW(path(L"b.bin").c_str());
    return false;
  });
  EXPECT_TRUE(zip_list(zipper, {L"a.txt", L"b.bin"}));
  EXPECT_FALSE(exists(L"a.kwc"));
  VARIANT_BOOL stands = VARIANT_FALSE;
  global_->Check_Error(&stands);
  EXPECT_EQ(stands, VARIANT_TRUE);
  EXPECT_EQ(displayed(),
            L"Errore di accesso al file " + path(L"b.bin") + L"\r\n[#53 - Module.FileZip]");
}

TEST_F(ArchiveRoad, cancelling_is_told_in_a_box) {
  const auto zipper = create<_ZipFile>(CLSID_ZipFile);
  ZipEvents events(zipper.get(), [](const ZipEvent&) { return true; });
  EXPECT_TRUE(zip_list(zipper, {L"a.txt"}));
  EXPECT_FALSE(exists(L"a.kwc"));
  EXPECT_EQ(displayed(), L"Procedura interrotta dall'utente.\r\n[#20010 - Module.FileZip]");
}

}  // namespace
}  // namespace qv::tests
