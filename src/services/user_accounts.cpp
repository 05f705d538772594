#include "services/user_accounts.h"

#include <objbase.h>
#include <windows.h>

#include "automation/late_bound.h"
#include "frame/error_state.h"

namespace qv::services {
namespace {

constexpr const wchar_t* kServer = L"" QVRT_DIRECTORY_SERVER;
constexpr const wchar_t* kDomain = L"" QVRT_DIRECTORY_DOMAIN;

// The object of a path, as the language's GetObject has it.
Object<IDispatch> bound_object(const Text& path) {
  Object<IDispatch> object;
  check(CoGetObject(path.c_str(), nullptr, IID_IDispatch,
                    reinterpret_cast<void**>(object.receive())));
  return object;
}

Date now() {
  SYSTEMTIME time;
  Date date;
  GetLocalTime(&time);
  SystemTimeToVariantTime(&time, &date.days);
  return date;
}

void make_account(const Text& name, const Text& password) {
  const auto root = bound_object(concat({L"LDAP://", kServer}));
  const auto user = late_bound::call(root, L"Create", {L"User", name}).to_object();
  late_bound::call(user, L"SetInfo");
  late_bound::call(user, L"SetPassword", {password});
  late_bound::put(user, L"AccountExpirationDate", now());
  late_bound::call(user, L"SetInfo");
}

// "name=value", the first "=" counts.
void set_property(const Object<IDispatch>& user, std::wstring_view entry) {
  const std::size_t mark = entry.find(L'=');
  if (mark == std::wstring_view::npos) raise(kInvalidProcedureCall);
  const Text name = entry.substr(0, mark);
  late_bound::put(user, name.c_str(), entry.substr(mark + 1));
}

// Nothing is stored here: that is left to what comes next.
void set_properties(const Object<IDispatch>& user, std::wstring_view properties) {
  constexpr std::wstring_view kSeparator = L"::";
  if (properties.empty()) return;
  for (std::size_t end = properties.find(kSeparator); end != std::wstring_view::npos;
       end = properties.find(kSeparator)) {
    set_property(user, properties.substr(0, end));
    properties.remove_prefix(end + kSeparator.size());
  }
  set_property(user, properties);
}

void add_to_group(const Object<IDispatch>& user, const Text& server, const Text& group_name) {
  const auto group = bound_object(concat({L"WinNT://", server, L"/", group_name, L",group"}));
  late_bound::call(group, L"Add", {late_bound::get(user, L"ADsPath")});
  late_bound::call(group, L"SetInfo");
}

}  // namespace

Boolean UserCreate(const Text& ServerName, const Text& UserName, const Text& Password,
                   const Text& GroupName, const Text& Properties) {
  return frame::handled(L"QvRtLibOle.KwRtLibMod.UserCreate, 0", frame::kTakeError, True, [&] {
    make_account(UserName, Password);
    const auto user = bound_object(concat({L"LDAP://cn=", UserName, L",cn=Users,", kDomain}));
    set_properties(user, Properties);
    if (!GroupName.empty()) add_to_group(user, ServerName, GroupName);
    return False;
  });
}

}  // namespace qv::services
