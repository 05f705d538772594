// Setup descriptions and the records made of them.

#include <string>
#include <vector>

#include "server/collection_client.h"
#include "server/format_page.h"
#include "server/setup_client.h"
#include "server/temp_folder.h"

namespace qv::tests {
namespace {

using namespace std::string_literals;

constexpr const wchar_t* kReadSource = L" < QvRtLibOle.KwRtLibMod.SetupIniRead";
constexpr const wchar_t* kLoadSource = L" < QvRtLibOle.KwRtLibMod.SetupInfoLoad";

std::wstring both_sources(const std::wstring& first = L"") {
  return first + kReadSource + kLoadSource;
}

class SetupDescription : public SetupClient {
 protected:
  void write(const std::string& content) { folder_.write(L"setup.lst", content); }
  // A description of one line.
  void write_line(const std::string& line) { write("[Setup1 Files]\r\nFile1=" + line + "\r\n"); }
  // One line, all fields of which but one are sound.
  void write_field(int number, const std::string& content) {
    const std::vector<std::string> sound = {
        "@a.dll", "C:\\no such folder", "", "", "8/6/98 5:30:00 PM", "17", "1.2.3.4"};
    std::string line;
    for (int i = 0; i < 7; ++i) {
      if (i > 0) line += ',';
      line += i == number ? content : sound[static_cast<std::size_t>(i)];
    }
    write_line(line);
  }
  bool load(LONG flags = 0) { return SetupClient::load(folder_.file(L"setup.lst"), flags); }
  SetupRecord loaded_record() {
    EXPECT_FALSE(load());
    return record(1);
  }
  // What becomes of one field.
  SetupRecord with_field(int number, const std::string& content) {
    files_ = create<_kwCollection>(CLSID_kwCollection);
    write_field(number, content);
    return loaded_record();
  }
  void expect_refused_line() {
    EXPECT_TRUE(load());
    expect_error(0, both_sources());
  }

  const TempFolder folder_;
};

std::string example_of_the_page() {
  std::string example;
  for (const auto& line : block_of_page("setup-description.md", "ini", 1)) example += line + "\r\n";
  return example;
}

TEST_F(SetupDescription, of_the_format_page_is_read) {
  write(example_of_the_page());
  ASSERT_FALSE(load());
  const auto system = system_folder();
  ASSERT_EQ(count(), 5);
  const auto types = record(1);
  EXPECT_EQ(types.name(), L"stdole2.tlb");
  EXPECT_EQ(types.installed().name(), system + L"stdole2.tlb");
  EXPECT_EQ(types.reg_mode(), 3);
  EXPECT_FALSE(types.is_shared());
  EXPECT_FALSE(types.is_program());
  EXPECT_EQ(types.last_write(), L"1999-09-14 00:00:00");
  EXPECT_EQ(types.size(), 17920);
  EXPECT_EQ(types.version(), L"2.40.4275.1");
  EXPECT_EQ(types.major(), 2 << 16 | 40);
  EXPECT_EQ(types.minor(), 4275 << 16 | 1);
  const auto run_time = record(2);
  EXPECT_EQ(run_time.name(), L"msvbvm60.dll");
  EXPECT_EQ(run_time.installed().name(), system + L"msvbvm60.dll");
  EXPECT_EQ(run_time.reg_mode(), 1);
  EXPECT_TRUE(run_time.is_shared());
  EXPECT_EQ(run_time.last_write(), L"2004-02-23 21:42:40");
  EXPECT_EQ(run_time.size(), 1386496);
  EXPECT_EQ(run_time.version(), L"6.0.97.82");
  const auto program = record(3);
  EXPECT_EQ(program.name(), L"FATTURE.EXE");
  EXPECT_EQ(program.installed().name(), L"C:\\Programmi\\Fatture\\FATTURE.EXE");
  EXPECT_EQ(program.reg_mode(), 0);
  EXPECT_FALSE(program.is_shared());
  EXPECT_TRUE(program.is_program());
  EXPECT_EQ(program.last_write(), L"1998-08-06 17:30:00");
  EXPECT_EQ(program.size(), 1048576);
  EXPECT_EQ(program.version(), L"5.0.0.267");
  const auto service = record(4);
  EXPECT_EQ(service.name(), L"stampe.exe");
  EXPECT_EQ(service.installed().name(), L"C:\\Programmi\\Fatture\\Servizi\\stampe.exe");
  EXPECT_EQ(service.reg_mode(), 2);
  EXPECT_EQ(service.last_write(), L"1998-08-06 17:30:00");
  EXPECT_EQ(service.version(), L"5.0.1.-1");
  const auto text = record(5);
  EXPECT_EQ(text.name(), L"leggimi.txt");
  EXPECT_EQ(text.installed().name(), L"C:\\Programmi\\Fatture\\Documenti\\leggimi.txt");
  EXPECT_EQ(text.last_write(), L"2003-01-02 00:00:00");
  EXPECT_EQ(text.size(), 512);
  EXPECT_EQ(text.version(), L"0.0.0.0");
  expect_no_error();
}

TEST_F(SetupDescription, keys_its_records_by_their_names) {
  write(example_of_the_page());
  ASSERT_FALSE(load());
  EXPECT_EQ(record(L"fatture.exe").name(), L"FATTURE.EXE");
  EXPECT_EQ(record(L"LEGGIMI.TXT").name(), L"leggimi.txt");
}

TEST_F(SetupDescription, leaves_the_bootstrap_files_out_where_asked) {
  write(example_of_the_page());
  ASSERT_FALSE(load(kNoBoot));
  ASSERT_EQ(count(), 3);
  EXPECT_EQ(record(1).name(), L"FATTURE.EXE");
}

TEST_F(SetupDescription, that_is_missing_is_no_failure_and_adds_nothing) {
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 0);
  files_ = Pointer<_kwCollection>();
  EXPECT_FALSE(load());
  expect_no_error();
}

TEST_F(SetupDescription, without_sections_adds_nothing) {
  write("");
  EXPECT_FALSE(load());
  write("[Setup]\r\nAppExe=a.exe\r\n[Other]\r\nFile1=@a,,,,,,\r\n");
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 0);
}

TEST_F(SetupDescription, without_a_folder_of_its_name_is_looked_for_in_the_Windows_folder) {
  wchar_t windows[260];
  GetWindowsDirectoryW(windows, 260);
  const auto name = L"qvrt" + std::to_wstring(GetCurrentProcessId()) + L".lst";
  const auto path = std::wstring(windows) + L"\\" + name;
  WritePrivateProfileStringW(L"Setup1 Files", L"File1", L"@a.dll,C:\\x,,,,,1.2.3.4", path.c_str());
  EXPECT_FALSE(SetupClient::load(name, 0));
  EXPECT_EQ(count(), 1);
  DeleteFileW(path.c_str());
}

TEST_F(SetupDescription, ends_a_section_at_the_first_number_without_a_value) {
  write(
      "[Setup1 Files]\r\nFile1=@a,,,,,,0.0.0.0\r\nFile2=@b,,,,,,0.0.0.0\r\n"
      "File4=@d,,,,,,0.0.0.0\r\n");
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 2);
  write("[Setup1 Files]\r\nFile1=@e,,,,,,0.0.0.0\r\nFile2=\r\nFile3=@f,,,,,,0.0.0.0\r\n");
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 3);
  write("[Setup1 Files]\r\nFile0=@g,,,,,,0.0.0.0\r\nFile01=@h,,,,,,0.0.0.0\r\n");
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 3);
  expect_no_error();
}

TEST_F(SetupDescription, of_many_files_keeps_their_order) {
  std::string content = "[Setup1 Files]\r\n";
  for (int i = 1; i <= 120; ++i) {
    const auto number = std::to_string(i);
    content += "File" + number + "=@f" + number + ",,,,," + number + ",0.0.0." + number + "\r\n";
  }
  write(content);
  EXPECT_FALSE(load());
  ASSERT_EQ(count(), 120);
  for (int i = 1; i <= 120; ++i) {
    const auto file = record(i);
    EXPECT_EQ(file.name(), L"f" + std::to_wstring(i));
    EXPECT_EQ(file.size(), i);
    EXPECT_EQ(file.minor(), i);
  }
}

TEST_F(SetupDescription, adds_to_what_the_collection_holds) {
  write_line("@a,,,,,,0.0.0.0");
  EXPECT_FALSE(load());
  write_line("@b,,,,,,0.0.0.0");
  EXPECT_FALSE(load());
  EXPECT_EQ(count(), 2);
}

TEST_F(SetupDescription, drops_one_character_before_the_name) {
  EXPECT_EQ(with_field(0, "@a.dll").name(), L"a.dll");
  EXPECT_EQ(with_field(0, "a.dll").name(), L".dll");
  EXPECT_EQ(with_field(0, "@\xE8.dll").name(), L"\x00E8.dll");
}

TEST_F(SetupDescription, knows_the_main_program_in_any_case) {
  write(
      "[Setup]\r\nAppExe=Prova.EXE\r\n[Setup1 Files]\r\n"
      "File1=@PROVA.exe,,,,,,0.0.0.0\r\nFile2=@prova.exe2,,,,,,0.0.0.0\r\n");
  ASSERT_FALSE(load());
  EXPECT_TRUE(record(1).is_program());
  EXPECT_FALSE(record(2).is_program());
}

TEST_F(SetupDescription, expands_the_destination_s_macros) {
  EXPECT_EQ(with_field(1, "$(WinPath)").installed().name(), windows_folder() + L"a.dll");
  EXPECT_EQ(with_field(1, "$(WinPath)\\sub").installed().name(), windows_folder() + L"sub\\a.dll");
  EXPECT_EQ(with_field(1, "$(NoSuchMacro)").installed().name(), L"$(NoSuchMacro)\\a.dll");
  EXPECT_EQ(with_field(1, "").installed().name(), L"a.dll");
}

TEST_F(SetupDescription, takes_its_own_folder_for_the_application_s) {
  write(
      "[Setup]\r\nDefaultDir=$(WinPath)\\Prova\r\n[Setup1 Files]\r\n"
      "File1=@a,$(AppPath),,,,,0.0.0.0\r\nFile2=@b,.\\sub,,,,,0.0.0.0\r\n"
      "File3=@c,..\\vicino,,,,,0.0.0.0\r\n");
  ASSERT_FALSE(load());
  EXPECT_EQ(record(1).installed().name(), windows_folder() + L"Prova\\a");
  EXPECT_EQ(record(2).installed().name(), windows_folder() + L"Prova\\sub\\b");
  EXPECT_EQ(record(3).installed().name(), windows_folder() + L"vicino\\c");
}

TEST_F(SetupDescription, knows_three_ways_to_register_in_any_case) {
  EXPECT_EQ(with_field(2, "$(DLLSelfRegister)").reg_mode(), 1);
  EXPECT_EQ(with_field(2, "$(EXESelfRegister)").reg_mode(), 2);
  EXPECT_EQ(with_field(2, "$(TLBRegister)").reg_mode(), 3);
  EXPECT_EQ(with_field(2, "$(REMOTE)").reg_mode(), 0);
  EXPECT_EQ(with_field(2, "").reg_mode(), 0);
}

TEST_F(SetupDescription, knows_shared_files_in_any_case) {
  EXPECT_TRUE(with_field(3, "$(Shared)").is_shared());
  EXPECT_TRUE(with_field(3, "$(SHARED)").is_shared());
  EXPECT_FALSE(with_field(3, "Shared").is_shared());
}

TEST_F(SetupDescription, reads_date_and_time) {
  const std::pair<const char*, const wchar_t*> cases[] = {
      {"8/6/98 5:30:00 PM", L"1998-08-06 17:30:00"},
      {"8/6/98 5:30:00 pm", L"1998-08-06 17:30:00"},
      {"8/6/98 5:30:00 AM", L"1998-08-06 05:30:00"},
      {"8/6/98 17:30:01", L"1998-08-06 17:30:01"},
      {"8/6/98   5:30:02   PM", L"1998-08-06 17:30:02"},
      {"8/6/98", L"1998-08-06 00:00:00"},
      {"12/31/19 23:59:59", L"2019-12-31 23:59:59"},
      {"1/1/20 0:0:0", L"1920-01-01 00:00:00"},
      {"1/1/00 0:0:0", L"2000-01-01 00:00:00"},
      {"2/29/04 1:2:3 AM", L"2004-02-29 01:02:03"},
      {"13/32/98 25:61:61", L"1999-02-02 02:02:01"},
      {"08/06/98 05:30:00 PM", L"1998-08-06 17:30:00"}};
  for (const auto& [field, expected] : cases) {
    EXPECT_EQ(with_field(4, field).last_write(), expected) << field;
  }
}

TEST_F(SetupDescription, carries_twelve_in_the_afternoon_into_the_next_day) {
  EXPECT_EQ(with_field(4, "8/6/98 12:30:00 PM").last_write(), L"1998-08-07 00:30:00");
  EXPECT_EQ(with_field(4, "12/31/98 12:00:00 PM").last_write(), L"1999-01-01 00:00:00");
  EXPECT_EQ(with_field(4, "8/6/98 12:30:00 AM").last_write(), L"1998-08-06 12:30:00");
}

TEST_F(SetupDescription, adds_1900_to_a_year_of_four_digits) {
  EXPECT_EQ(with_field(4, "8/6/1998 5:30:00 PM").last_write(), L"3898-08-06 17:30:00");
}

TEST_F(SetupDescription, without_a_date_has_the_day_before_December_1999) {
  EXPECT_EQ(with_field(4, "").last_write(), L"1999-11-30 00:00:00");
  EXPECT_EQ(with_field(4, "none").last_write(), L"1999-11-30 00:00:00");
}

TEST_F(SetupDescription, reads_the_size_as_far_as_it_is_a_number) {
  EXPECT_EQ(with_field(5, "2147483647").size(), 2147483647);
  EXPECT_EQ(with_field(5, "1024 bytes").size(), 1024);
  EXPECT_EQ(with_field(5, "-1").size(), -1);
  EXPECT_EQ(with_field(5, "1.5").size(), 2);
  EXPECT_EQ(with_field(5, "2.5").size(), 2);
  EXPECT_EQ(with_field(5, "&H10").size(), 16);
  EXPECT_EQ(with_field(5, "none").size(), 0);
}

TEST_F(SetupDescription, puts_the_version_s_numbers_into_words) {
  const auto record = with_field(6, "1.2.3.4");
  EXPECT_EQ(record.major(), 0x00010002);
  EXPECT_EQ(record.minor(), 0x00030004);
  EXPECT_EQ(with_field(6, "32767.0.-1.-32768").version(), L"32767.0.-1.-32768");
  EXPECT_EQ(with_field(6, "1.2.3.4.5").version(), L"1.2.3.4");
  EXPECT_EQ(with_field(6, "a..3b.").version(), L"0.0.3.0");
}

TEST_F(SetupDescription, fails_at_a_line_with_too_few_fields) {
  std::string line = "@a.dll";
  for (int fields = 1; fields < 7; ++fields) {
    write_line(line);
    expect_refused_line();
    line += ",";
  }
  EXPECT_EQ(count(), 0);
}

TEST_F(SetupDescription, fails_at_a_version_with_too_few_numbers) {
  for (const auto* version : {"", "1", "1.2", "1.2.3"}) {
    write_field(6, version);
    expect_refused_line();
  }
}

TEST_F(SetupDescription, fails_at_a_number_that_is_too_large) {
  for (const auto& [field, content] :
       {std::pair{4, "32768/1/98"}, std::pair{4, "1/1/30868"}, std::pair{4, "1/1/98 32767:0:0 PM"},
        std::pair{4, "1/1/8101"}, std::pair{5, "2147483648"}, std::pair{5, "1E400"},
        std::pair{6, "32768.0.0.0"}, std::pair{6, "1.2.3.40000"}}) {
    write_field(field, content);
    expect_refused_line();
  }
}

TEST_F(SetupDescription, keeps_the_records_before_a_failure) {
  write(
      "[Bootstrap Files]\r\nFile1=@a,,,,,,0.0.0.0\r\nFile2=@b\r\nFile3=@c,,,,,,0.0.0.0\r\n"
      "[Setup1 Files]\r\nFile1=@d,,,,,,0.0.0.0\r\n");
  expect_refused_line();
  ASSERT_EQ(count(), 1);
  EXPECT_EQ(record(1).name(), L"a");
}

TEST_F(SetupDescription, tells_a_missing_data_access_library_before_a_failure_of_the_line) {
  data_access_.remove();
  write_line("@a");
  EXPECT_TRUE(load());
  expect_error(0, both_sources());
  write_line("@a,b");
  EXPECT_TRUE(load());
  expect_error(20000, both_sources(L"KwRtLibMod.RegistryRead"));
  write_line("@a,b,,,,,0.0.0.0");
  EXPECT_FALSE(load());
  expect_no_error();
}

TEST_F(SetupDescription, fails_at_a_folder_that_can_t_be_resolved) {
  const auto source = both_sources(L"KwRtLibMod.RegistryRead < KwRtLibMod.ResolveFileName");
  write_field(1, "$(SetupPath:no such.exe)");
  EXPECT_TRUE(load());
  expect_error(20000, source);
  write("[Setup]\r\nDefaultDir=$(SetupPath:no such.exe)\r\n");
  EXPECT_TRUE(load());
  expect_error(20000, source);
  write("[Setup]\r\nDefaultDir=$(SetupPath:\r\n");
  EXPECT_TRUE(load());
  expect_error(5, both_sources(L"KwRtLibMod.ResolveFileName"));
}

TEST_F(SetupDescription, needs_a_collection_once_there_is_a_line) {
  files_ = Pointer<_kwCollection>();
  write_line("@a,,,,,,0.0.0.0");
  expect_refused_line();
}

}  // namespace
}  // namespace qv::tests
