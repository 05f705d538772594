#include "ui/control_window.h"

#include <ocidl.h>

#include <array>
#include <string_view>

#include "automation/late_bound.h"
#include "runtime/err.h"

namespace qv::ui {
namespace {

bool equal_ignoring_case(std::wstring_view a, std::wstring_view b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// The name of the object's class, or of its interface where it does not tell the class; "" where it
// tells neither.
Text type_name(const Object<IDispatch>& object) {
  Object<ITypeInfo> type;
  if (const auto classes = Object<IProvideClassInfo>::from(object.get())) {
    classes->GetClassInfo(type.receive());
  }
  if (!type) object->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.receive());
  BSTR name = nullptr;
  if (type) type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  return Text::adopt(name);
}

// An interface is called like its class behind an underscore.
bool has_type(const Object<IDispatch>& control, std::wstring_view kind) {
  const Text name = type_name(control);
  std::wstring_view bare = name;
  if (bare.starts_with(L'_')) bare.remove_prefix(1);
  return equal_ignoring_case(bare, kind);
}

// The language calls the windows of its controls "ThunderRT6ComboBox" and the like, by its release.
bool is_class_of(std::wstring_view window_class, std::wstring_view kind) {
  constexpr std::wstring_view kLanguagePrefix = L"Thunder";
  if (window_class.size() < kind.size()) return false;
  const std::size_t split = window_class.size() - kind.size();
  if (!equal_ignoring_case(window_class.substr(split), kind)) return false;
  return split == 0 || window_class.starts_with(kLanguagePrefix);
}

bool has_window_of(const Object<IDispatch>& control, std::wstring_view kind) {
  if (!late_bound::has_member(control, L"hwnd")) return false;
  std::array<wchar_t, 256> name;  // no longer ones exist
  const int length = GetClassNameW(window_of(control), name.data(), static_cast<int>(name.size()));
  return is_class_of({name.data(), static_cast<std::size_t>(length)}, kind);
}

bool is_control(const Object<IDispatch>& control, std::wstring_view kind) {
  return has_type(control, kind) || has_window_of(control, kind);
}

}  // namespace

HWND window_of(const Object<IDispatch>& control) {
  // Handles have 32 significant bits, extended by their sign.
  const LONG_PTR handle = late_bound::get(control, L"hwnd").to_long();
  return reinterpret_cast<HWND>(handle);
}

Long send(HWND window, UINT message, WPARAM word, LPARAM value) {
  const LRESULT answer = SendMessageW(window, message, word, value);
  capture_last_dll_error();
  return static_cast<Long>(answer);
}

Long send(HWND window, UINT message, WPARAM word, const void* data) {
  return send(window, message, word, reinterpret_cast<LPARAM>(data));
}

void refresh(const Object<IDispatch>& control) { late_bound::call(control, L"Refresh"); }

bool is_combo_box(const Object<IDispatch>& control) { return is_control(control, L"ComboBox"); }

bool is_list_box(const Object<IDispatch>& control) { return is_control(control, L"ListBox"); }

}  // namespace qv::ui
