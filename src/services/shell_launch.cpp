#include "services/shell_launch.h"

#include <windows.h>
// shellapi.h needs windows.h before it.
#include <shellapi.h>

#include <algorithm>

namespace qv::services {
namespace {

struct Failure {
  Long code;
  const wchar_t* text;
};
constexpr Failure kFailures[] = {
    {SE_ERR_FNF, L"File non trovato."},
    {SE_ERR_PNF, L"File non trovato."},
    {SE_ERR_ACCESSDENIED, L"Accesso negato."},
    {SE_ERR_OOM, L"Memoria insufficiente."},
    {SE_ERR_SHARE, L"Il file è già in uso."},
    {SE_ERR_ASSOCINCOMPLETE, L"Nessuna associazione valida."},
    {SE_ERR_DDETIMEOUT, L"Timeout nella transazione DDE."},
    {SE_ERR_DDEFAIL, L"Transazione DDE fallita."},
    {SE_ERR_DDEBUSY, L"Impossibile completare la transazione DDE."},
    {SE_ERR_NOASSOC, L"Nessuna associazione valida."},
    {SE_ERR_DLLNOTFOUND, L"DLL non trovata."},
};

std::wstring_view left_trimmed(std::wstring_view text) {
  return text.substr(std::min(text.find_first_not_of(L' '), text.size()));
}

std::wstring_view right_trimmed(std::wstring_view text) {
  return text.substr(0, text.find_last_not_of(L' ') + 1);
}

}  // namespace

LaunchedCommand split_command(const Text& AppName, const Text& CmdLine) {
  std::wstring_view name = AppName;
  if (!name.starts_with(L'"')) return {AppName, CmdLine};
  name.remove_prefix(1);
  const std::size_t length = std::min(name.find(L'"'), name.size());
  const auto rest = left_trimmed(name.substr(std::min(length + 1, name.size())));
  const Text parameters = concat({right_trimmed(CmdLine), L" ", rest.substr(0, length)});
  return {left_trimmed(right_trimmed(name.substr(0, length))), left_trimmed(parameters)};
}

Text shell_failure_text(Long code) {
  const auto* found = std::ranges::find(kFailures, code, &Failure::code);
  if (found != std::ranges::end(kFailures)) return found->text;
  return concat({L"Errore di shell #", decimal(code)});
}

}  // namespace qv::services
