// Registration for the machine (DllRegisterServer) and for one user without rights (regsvr32 /n
// /i:user). What is written is one table of keys; taking it back removes exactly those.
#include <windows.h>
// olectl.h needs windows.h before it.
#include <olectl.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "frame/server/catalogue.h"
#include "frame/server/server.h"
#include "interfaces.h"

namespace qv::server {
namespace {

// Marshals interfaces by their description in the type library.
constexpr const wchar_t* kTypeLibraryMarshaler = L"{00020424-0000-0000-C000-000000000046}";
// Marshals interfaces that have nothing but Invoke.
constexpr const wchar_t* kDispatchMarshaler = L"{00020420-0000-0000-C000-000000000046}";
constexpr LCID kLocale = 0x409;
#ifdef _WIN64
constexpr SYSKIND kSystem = SYS_WIN64;
constexpr const wchar_t* kSystemName = L"win64";
#else
constexpr SYSKIND kSystem = SYS_WIN32;
constexpr const wchar_t* kSystemName = L"win32";
#endif

enum class Scope { machine, user };

struct Entry {
  std::wstring key;   // below Software\Classes
  std::wstring name;  // of the value; empty for the key's own
  std::wstring value;
};

struct Registration {
  std::vector<Entry> entries;
  std::vector<std::wstring> trees;  // removed whole on unregistering
};

std::wstring guid_text(const GUID& id) {
  wchar_t text[40];
  StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring library_version() {
  wchar_t text[16];
  // Versions in the registry are hexadecimal without leading zeros.
  wsprintfW(text, L"%x.%x", kQvRtLibOleMajor, kQvRtLibOleMinor);
  return text;
}

void add_class(Registration& registration, const ClassInfo& info, const std::wstring& path) {
  const std::wstring name = std::wstring(kLibraryName) + L"." + info.name;
  const std::wstring id = guid_text(info.class_id);
  const std::wstring tree = L"CLSID\\" + id;
  auto& entries = registration.entries;
  entries.push_back({name, L"", name});
  entries.push_back({name + L"\\CLSID", L"", id});
  entries.push_back({name + L"\\CurVer", L"", name + L".1"});
  entries.push_back({name + L".1", L"", name});
  entries.push_back({name + L".1\\CLSID", L"", id});
  entries.push_back({tree, L"", name});
  entries.push_back({tree + L"\\InprocServer32", L"", path});
  entries.push_back({tree + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
  entries.push_back({tree + L"\\ProgID", L"", name + L".1"});
  entries.push_back({tree + L"\\VersionIndependentProgID", L"", name});
  entries.push_back({tree + L"\\TypeLib", L"", guid_text(LIBID_QvRtLibOle)});
  entries.push_back({tree + L"\\Version", L"", library_version()});
  entries.push_back({tree + L"\\Programmable", L"", L""});
  registration.trees.insert(registration.trees.end(), {name, name + L".1", tree});
}

void add_interface(Registration& registration, const std::wstring& name, const IID& id,
                   const wchar_t* marshaler) {
  const std::wstring tree = L"Interface\\" + guid_text(id);
  auto& entries = registration.entries;
  entries.push_back({tree, L"", name});
  entries.push_back({tree + L"\\ProxyStubClsid32", L"", marshaler});
  entries.push_back({tree + L"\\TypeLib", L"", guid_text(LIBID_QvRtLibOle)});
  entries.push_back({tree + L"\\TypeLib", L"Version", library_version()});
  registration.trees.push_back(tree);
}

std::wstring library_key() { return L"TypeLib\\" + guid_text(LIBID_QvRtLibOle); }
std::wstring version_key() { return library_key() + L"\\" + library_version(); }
std::wstring locale_key() { return version_key() + L"\\409"; }
// The key of no language in particular. Some systems carry calls between apartments by the library
// that they find there, and look nowhere else.
std::wstring neutral_key() { return version_key() + L"\\0"; }

// What the platform writes when it registers a type library. Its service for one user is not used,
// since some systems let that write for the whole machine.
void add_type_library(Registration& registration, const std::wstring& path) {
  auto& entries = registration.entries;
  entries.push_back({version_key(), L"", kLibraryName});
  entries.push_back({version_key() + L"\\FLAGS", L"", L"0"});
  entries.push_back({version_key() + L"\\HELPDIR", L"", path.substr(0, path.rfind(L'\\'))});
  entries.push_back({locale_key() + L"\\" + kSystemName, L"", path});
  for (const ClassEntry& entry : class_catalogue()) {
    const ClassInfo& info = *entry.info;
    const std::wstring name = std::wstring(L"_") + info.name;
    add_interface(registration, name, info.interface_id, kTypeLibraryMarshaler);
    if (info.events != nullptr) {
      add_interface(registration, L"_" + name, *info.events, kDispatchMarshaler);
    }
  }
}

Registration all_entries(Scope scope) {
  const std::wstring path(module_path().view());
  Registration registration;
  for (const ClassEntry& entry : class_catalogue()) add_class(registration, *entry.info, path);
  // The type library registers the current ids of its interfaces and not those of earlier releases,
  // under which applications may still have them marshalled.
  for (const AliasEntry& alias : alias_catalogue()) {
    add_interface(registration, alias.name, alias.id, kTypeLibraryMarshaler);
  }
  registration.entries.push_back({neutral_key() + L"\\" + kSystemName, L"", path});
  if (scope == Scope::user) add_type_library(registration, path);
  return registration;
}

// Trees of the interfaces that the type library describes: the platform leaves the emptied keys of
// some behind.
std::vector<std::wstring> interface_trees() {
  std::vector<std::wstring> trees;
  for (const ClassEntry& entry : class_catalogue()) {
    trees.push_back(L"Interface\\" + guid_text(entry.info->interface_id));
    if (entry.info->events != nullptr) {
      trees.push_back(L"Interface\\" + guid_text(*entry.info->events));
    }
  }
  return trees;
}

HRESULT write(HKEY classes, const Entry& entry) noexcept {
  HKEY key = nullptr;
  LONG status = RegCreateKeyExW(classes, entry.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                KEY_SET_VALUE, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExW(key, entry.name.empty() ? nullptr : entry.name.c_str(), 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(entry.value.c_str()),
                            static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  return status == ERROR_SUCCESS ? S_OK : SELFREG_E_CLASS;
}

HRESULT open_classes(Scope scope, HKEY* classes) noexcept {
  const LONG status = RegCreateKeyExW(
      scope == Scope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, L"Software\\Classes", 0,
      nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, classes, nullptr);
  return status == ERROR_SUCCESS ? S_OK : SELFREG_E_CLASS;
}

std::vector<std::wstring> children(HKEY parent, const std::wstring& path) {
  std::vector<std::wstring> names;
  HKEY key = nullptr;
  if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return names;
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    names.emplace_back(name, length);
  }
  RegCloseKey(key);
  return names;
}

// Is a type library of that version still registered, for whatever locale and system?
bool has_library(HKEY classes, const std::wstring& version) {
  const auto locales = children(classes, version);
  // Beside the locales, a version's key has FLAGS and HELPDIR, which have no keys below.
  return std::ranges::any_of(locales, [&](const std::wstring& locale) {
    return !children(classes, std::wstring(version).append(L"\\").append(locale)).empty();
  });
}

// The library of the other bitness is registered below the same key, and stays.
LONG remove_emptied_library(HKEY classes) {
  if (has_library(classes, version_key())) return ERROR_SUCCESS;
  const LONG removed = RegDeleteTreeW(classes, version_key().c_str());
  if (!children(classes, library_key()).empty()) return removed;
  return RegDeleteTreeW(classes, library_key().c_str());
}

// The library of the other bitness may be there, too.
void remove_neutral_entry(HKEY classes) {
  RegDeleteTreeW(classes, (neutral_key() + L"\\" + kSystemName).c_str());
  if (children(classes, neutral_key()).empty()) RegDeleteTreeW(classes, neutral_key().c_str());
}

// A user may have had no classes at all: then the keys that hold them all were made for these.
void remove_empty_roots(HKEY classes) {
  for (const wchar_t* root : {L"CLSID", L"Interface", L"TypeLib"}) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(classes, root, 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
    DWORD keys = 1;
    DWORD values = 1;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                     nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (keys == 0 && values == 0) RegDeleteKeyW(classes, root);
  }
}

HRESULT unregister_server(Scope scope) {
  HKEY classes = nullptr;
  const HRESULT opened = open_classes(scope, &classes);
  if (FAILED(opened)) return opened;
  remove_neutral_entry(classes);
  if (scope == Scope::machine) {
    UnRegisterTypeLib(LIBID_QvRtLibOle, kQvRtLibOleMajor, kQvRtLibOleMinor, kLocale, kSystem);
  } else {
    RegDeleteTreeW(classes, (locale_key() + L"\\" + kSystemName).c_str());
  }
  HRESULT result = S_OK;
  const auto note = [&](LONG status) {
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) result = SELFREG_E_CLASS;
  };
  for (const auto& trees : {all_entries(scope).trees, interface_trees()}) {
    for (const std::wstring& tree : trees) note(RegDeleteTreeW(classes, tree.c_str()));
  }
  note(remove_emptied_library(classes));
  remove_empty_roots(classes);
  RegCloseKey(classes);
  return result;
}

HRESULT register_server(Scope scope) {
  if (scope == Scope::machine) {
    Object<ITypeLib> library;
    Text path = module_path();
    if (FAILED(load_type_library(library)) ||
        FAILED(RegisterTypeLib(library.get(), path.data(), nullptr))) {
      return SELFREG_E_TYPELIB;
    }
  }
  HKEY classes = nullptr;
  HRESULT result = open_classes(scope, &classes);
  if (FAILED(result)) return result;
  for (const Entry& entry : all_entries(scope).entries) {
    result = write(classes, entry);
    if (FAILED(result)) break;
  }
  RegCloseKey(classes);
  if (FAILED(result)) unregister_server(scope);  // all or nothing
  return result;
}

template <class Body>
HRESULT guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace
}  // namespace qv::server

extern "C" {

STDAPI DllRegisterServer() {
  using namespace qv::server;
  return guarded([] { return register_server(Scope::machine); });
}

STDAPI DllUnregisterServer() {
  using namespace qv::server;
  return guarded([] { return unregister_server(Scope::machine); });
}

// regsvr32 /i calls this; its one command is "user".
STDAPI DllInstall(BOOL install, const wchar_t* command) {
  using namespace qv::server;
  if (command == nullptr || std::wstring_view(command) != L"user") return E_INVALIDARG;
  return guarded([&] {
    return install != FALSE ? register_server(Scope::user) : unregister_server(Scope::user);
  });
}
}
