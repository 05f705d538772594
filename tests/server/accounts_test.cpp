// UserCreate, with a stand-in for the directory, and LogEvent. The provider of the system that the
// tests run on binds to a directory server but can't make objects in it, so that no real server
// would do.
#include <string>
#include <vector>

#include "server/client.h"
#include "server/directory_provider.h"

namespace qv::tests {
namespace {

using Calls = std::vector<std::wstring>;

constexpr const wchar_t* kRoot = L"LDAP://localhost";
const std::wstring kUser = L"LDAP://cn=rossi,cn=Users,dc=example,dc=com";

class UserAccounts : public testing::Test {
 protected:
  UserAccounts() { global_->Reset_Error(); }

  bool create_user(const wchar_t* group = L"", const wchar_t* properties = L"",
                   const wchar_t* server = L"server") {
    String server_text(server);
    String name(L"rossi");
    String password(L"segreto");
    String group_text(group);
    String property_text(properties);
    VARIANT_BOOL failed = 7;
    EXPECT_EQ(
        global_->UserCreate(&server_text, &name, &password, &group_text, &property_text, &failed),
        S_OK);
    return failed != VARIANT_FALSE;
  }
  // What making the account does.
  static Calls making() {
    const std::wstring user = std::wstring(kRoot) + L"/rossi";
    return {std::wstring(L"bind ") + kRoot,
            std::wstring(kRoot) + L" Create(User,rossi)",
            user + L" SetInfo()",
            user + L" SetPassword(segreto)",
            user + L" AccountExpirationDate=of type 7",
            user + L" SetInfo()",
            L"bind " + kUser};
  }
  static Calls making_and(const Calls& further) {
    Calls calls = making();
    calls.insert(calls.end(), further.begin(), further.end());
    return calls;
  }
  LONG error_number() {
    LONG number = -1;
    global_->Error_Number(&number);
    return number;
  }
  void expect_error(LONG number, std::wstring_view description) {
    String text;
    EXPECT_EQ(error_number(), number);
    global_->Error_Description(text.receive());
    EXPECT_EQ(text.view(), description);
    global_->Error_Source(text.receive());
    EXPECT_EQ(text, L"QvRtLibOle.KwRtLibMod.UserCreate, 0");
    global_->Reset_Error();
  }

  Pointer<_KwRtLib> global_ = create_global();
};

TEST_F(UserAccounts, an_account_is_made_and_expires_at_once) {
  DirectoryProvider directory;
  EXPECT_FALSE(create_user());
  EXPECT_EQ(directory.calls, making());
  EXPECT_EQ(error_number(), 0);
}

TEST_F(UserAccounts, group_and_properties_may_be_left_out) {
  DirectoryProvider directory;
  String server(L"server");
  String name(L"rossi");
  String password(L"segreto");
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(global_->UserCreate(&server, &name, &password, nullptr, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
  EXPECT_EQ(directory.calls, making());
}

TEST_F(UserAccounts, properties_are_set_one_by_one_and_not_stored) {
  DirectoryProvider directory;
  EXPECT_FALSE(create_user(L"", L"FullName=Mario Rossi::Mail=a=b::Empty=::Path=x:y"));
  EXPECT_EQ(directory.calls, making_and({kUser + L" FullName=Mario Rossi", kUser + L" Mail=a=b",
                                         kUser + L" Empty=", kUser + L" Path=x:y"}));
}

TEST_F(UserAccounts, a_group_gets_the_user_by_its_path) {
  DirectoryProvider directory;
  EXPECT_FALSE(create_user(L"Vendite", L"Mail=m"));
  const std::wstring group = L"WinNT://server/Vendite,group";
  EXPECT_EQ(directory.calls,
            making_and({kUser + L" Mail=m", L"bind " + group, kUser + L" get ADsPath",
                        group + L" Add(" + kUser + L")", group + L" SetInfo()"}));
}

TEST_F(UserAccounts, without_a_group_the_server_is_not_touched) {
  DirectoryProvider directory;
  EXPECT_FALSE(create_user(L"", L"", L"a server that is nowhere"));
  EXPECT_EQ(directory.calls, making());
}

TEST_F(UserAccounts, an_entry_without_an_equals_sign_fails_with_the_user_made) {
  for (const wchar_t* properties : {L"Mail=m::FullName", L"Mail=m::", L"Mail=m::::Path=x"}) {
    DirectoryProvider directory;
    EXPECT_TRUE(create_user(L"Vendite", properties)) << properties;
    EXPECT_EQ(directory.calls, making_and({kUser + L" Mail=m"})) << properties;
    expect_error(5, L"Invalid procedure call or argument");
  }
}

TEST_F(UserAccounts, a_property_without_a_name_is_none) {
  DirectoryProvider directory;
  EXPECT_TRUE(create_user(L"", L"=value"));
  expect_error(438, L"Object doesn't support this property or method");
}

TEST_F(UserAccounts, what_the_directory_refuses_ends_the_call_there) {
  const Calls all =
      making_and({kUser + L" Mail=m", L"bind WinNT://server/Vendite,group", kUser + L" get ADsPath",
                  L"WinNT://server/Vendite,group Add(" + kUser + L")",
                  L"WinNT://server/Vendite,group SetInfo()"});
  for (const std::wstring& failing : all) {
    if (failing.starts_with(L"bind")) continue;
    DirectoryProvider directory;
    directory.failing = failing;
    EXPECT_TRUE(create_user(L"Vendite", L"Mail=m")) << failing;
    EXPECT_EQ(directory.calls.back(), failing);
    expect_error(1234, L"refused by the directory");
  }
}

TEST_F(UserAccounts, a_path_that_leads_nowhere_is_a_failure) {
  for (const std::wstring& failing :
       {std::wstring(L"bind ") + kRoot, L"bind " + kUser, std::wstring(L"bind WinNT://")}) {
    DirectoryProvider directory;
    directory.failing = failing;
    EXPECT_TRUE(create_user(L"Vendite")) << failing;
    EXPECT_TRUE(directory.calls.back().starts_with(failing));
    EXPECT_NE(error_number(), 0);
    String source;
    global_->Error_Source(source.receive());
    EXPECT_EQ(source, L"QvRtLibOle.KwRtLibMod.UserCreate, 0");
    global_->Reset_Error();
  }
}

TEST_F(UserAccounts, without_a_provider_no_account_is_made) {
  const NoDirectory none;
  EXPECT_TRUE(create_user());
  EXPECT_LT(error_number(), 0) << "the system's own number";
  expect_error(error_number(), L"Application-defined or object-defined error");
}

// The 32-bit system of the tests starts a process for its provider, which would outlive the test.
#ifdef _WIN64
TEST_F(UserAccounts, a_server_that_does_not_answer_is_a_failure) {
  constexpr LONG kServerDown = static_cast<LONG>(0x8007203A);
  EXPECT_TRUE(create_user());
  expect_error(kServerDown, L"Application-defined or object-defined error");
}
#endif

class EventLog : public testing::Test {
 protected:
  EventLog() { global_->Reset_Error(); }
  HRESULT log(LONG type, bool& failed) {
    String source(L"QvRtTest");
    String text(L"text");
    LONG id = 5;
    SHORT category = 2;
    VARIANT_BOOL result = 7;
    const HRESULT status = global_->LogEvent(&source, &text, &type, &id, &category, &result);
    failed = result != VARIANT_FALSE;
    return status;
  }
  Pointer<_KwRtLib> global_ = create_global();
};

// The system of the tests takes entries and stores none; what it is given is looked at elsewhere.
TEST_F(EventLog, an_entry_of_each_kind_is_taken) {
  for (const LONG type : {0, 1, 2, 4, 8, 10}) {
    bool failed = true;
    EXPECT_EQ(log(type, failed), S_OK);
    EXPECT_FALSE(failed) << type;
  }
  LONG number = -1;
  global_->Error_Number(&number);
  EXPECT_EQ(number, 0);
}

TEST_F(EventLog, the_category_may_be_left_out) {
  String source(L"QvRtTest");
  String text;
  LONG type = 4;
  LONG id = -1;
  VARIANT_BOOL failed = 7;
  EXPECT_EQ(global_->LogEvent(&source, &text, &type, &id, nullptr, &failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

TEST_F(EventLog, a_kind_that_fits_no_entry_is_an_overflow) {
  bool failed = false;
  EXPECT_EQ(log(70000, failed), S_OK);
  EXPECT_TRUE(failed);
  LONG number = 0;
  String source;
  global_->Error_Number(&number);
  EXPECT_EQ(number, 6);
  global_->Error_Source(source.receive());
  EXPECT_EQ(source, L"QvRtLibOle.KwRtLibMod.LogEvent, 0");
}

}  // namespace
}  // namespace qv::tests
