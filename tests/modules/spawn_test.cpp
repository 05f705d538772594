// What Spawn makes of each answer of the shell, and of the texts that it is given.
#include <gtest/gtest.h>
#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <string>
#include <vector>

#include "frame/error_state.h"
#include "modules/stand_in.h"
#include "services/processes.h"
#include "services/shell_launch.h"

namespace qv::services {
namespace {

using tests::StandIn;

SHELLEXECUTEINFOW asked;
std::intptr_t failure_code = 0;
HANDLE given_process = nullptr;

BOOL WINAPI fails(SHELLEXECUTEINFOW* info) {
  info->hInstApp = reinterpret_cast<HINSTANCE>(failure_code);
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}
BOOL WINAPI starts(SHELLEXECUTEINFOW* info) {
  asked = *info;
  info->hInstApp = reinterpret_cast<HINSTANCE>(std::intptr_t{33});
  info->hProcess = given_process;
  return TRUE;
}

Boolean spawn(const Text& name, const Variant& no_lock = Variant::missing()) {
  const Variant missing = Variant::missing();
  return Spawn(name, missing, missing, missing, no_lock, missing, missing, missing, missing,
               missing, missing);
}

void expect_failure(Long number, const std::wstring& name, const std::wstring& reason) {
  EXPECT_EQ(frame::Error_Number(), number);
  EXPECT_EQ(frame::Error_Description().view(),
            L"Impossibile eseguire il processo " + name + L".\r\n" + reason);
  EXPECT_EQ(frame::Error_Source(), L"KwRtLibMod.Spawn");
  frame::Reset_Error();
}

TEST(SpawnModule, each_failure_of_the_shell_has_its_text) {
  const struct {
    Long code;
    const wchar_t* text;
  } kTexts[] = {
      {2, L"File non trovato."},
      {3, L"File non trovato."},
      {5, L"Accesso negato."},
      {8, L"Memoria insufficiente."},
      {26, L"Il file \x00E8 gi\x00E0 in uso."},
      {27, L"Nessuna associazione valida."},
      {28, L"Timeout nella transazione DDE."},
      {29, L"Transazione DDE fallita."},
      {30, L"Impossibile completare la transazione DDE."},
      {31, L"Nessuna associazione valida."},
      {32, L"DLL non trovata."},
      {0, L"Errore di shell #0"},
      {11, L"Errore di shell #11"},
      {-1, L"Errore di shell #-1"},
  };
  const StandIn shell("ShellExecuteExW", fails);
  for (const auto& [code, text] : kTexts) {
    EXPECT_EQ(shell_failure_text(code), text);
    failure_code = code;
    EXPECT_TRUE(spawn(L"program.exe"));
    EXPECT_EQ(frame::Error_LastDLLError(), ERROR_ACCESS_DENIED);
    expect_failure(20000, L"program.exe", text);
  }
}

TEST(SpawnModule, a_started_document_without_a_process_is_a_failure_only_when_waited_for) {
  given_process = nullptr;
  const StandIn shell("ShellExecuteExW", starts);
  EXPECT_TRUE(spawn(L"document.txt"));
  expect_failure(20000, L"document.txt", L"Il processo \x00E8 terminato prima di idle.");
  EXPECT_FALSE(spawn(L"document.txt", True));
  EXPECT_EQ(frame::Error_Number(), 0);
}

TEST(SpawnModule, the_shell_shows_no_box_and_keeps_the_process_only_for_a_wait) {
  const StandIn shell("ShellExecuteExW", starts);
  given_process = nullptr;
  spawn(L"program.exe", True);
  EXPECT_EQ(asked.cbSize, sizeof(SHELLEXECUTEINFOW));
  EXPECT_EQ(asked.fMask, 0x600U);
  EXPECT_EQ(asked.hwnd, GetDesktopWindow());
  EXPECT_EQ(asked.nShow, 1);
  spawn(L"program.exe");
  EXPECT_EQ(asked.fMask, 0x640U);
  frame::Reset_Error();
}

TEST(SpawnModule, a_process_that_tells_nothing_has_ended_with_0) {
  const StandIn shell("ShellExecuteExW", starts);
  given_process = CreateEventW(nullptr, TRUE, FALSE, nullptr);  // a handle that is no process
  const Variant missing = Variant::missing();
  frame::Error_Replace(missing, missing, missing, missing, missing, Long{77});
  EXPECT_FALSE(spawn(L"program.exe"));
  EXPECT_EQ(frame::Error_LastDLLError(), 0);
  EXPECT_FALSE(CloseHandle(given_process)) << "it has been closed";
  given_process = nullptr;
}

TEST(SpawnModule, names_are_split_at_their_quotes) {
  const struct {
    const wchar_t* name;
    const wchar_t* command;
    const wchar_t* program;
    const wchar_t* parameters;
  } kSplit[] = {
      {L"a b.exe", L" c ", L"a b.exe", L" c "},
      {L"", L"c", L"", L"c"},
      {L" \"a\" b", L"c", L" \"a\" b", L"c"},
      {L"\"ab\"", L"", L"ab", L""},
      {L"\"ab\"", L"c", L"ab", L"c "},
      {L"\"ab\" cd", L"", L"ab", L"cd"},
      {L"\"ab\"cd", L"", L"ab", L"cd"},
      {L"\"ab\"   cdef", L"", L"ab", L"cd"},
      {L"\"ab\" cdef", L" first  ", L"ab", L"first cd"},
      {L"\"ab\" c\"d\"", L"", L"ab", L"c\""},
      {L"\" ab \" cdefg", L"", L"ab", L"cdef"},
      {L"\"ab", L"c", L"ab", L"c "},
      {L"\"ab", L"", L"ab", L""},
      {L"\"", L"c", L"", L"c "},
      {L"\"\" cd", L"", L"", L""},
      {L"\"\" cd", L"e", L"", L"e "},
      {L"\"abc\" d   e", L"", L"abc", L"d  "},
  };
  for (const auto& [name, command, program, parameters] : kSplit) {
    const LaunchedCommand split = split_command(name, command);
    EXPECT_EQ(split.program, program) << name;
    EXPECT_EQ(split.parameters, parameters) << name;
  }
}

}  // namespace
}  // namespace qv::services
