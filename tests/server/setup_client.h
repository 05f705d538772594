// Setup descriptions as a typed client loads them.
#pragma once

#include <cstdio>
#include <string>

#include "server/error_record_client.h"
#include "server/registry_value.h"

namespace qv::tests {

// One record, as it was added to the collection.
class SetupRecord {
 public:
  explicit SetupRecord(IUnknown* object) : file_(Pointer<_QvtFileInfo>::from(object)) {
    EXPECT_TRUE(file_);
  }

  _QvtFileInfo* operator->() const { return file_.get(); }
  std::wstring name() const { return text(&_QvtFileInfo::get_FileName); }
  std::wstring type_library() const { return text(&_QvtFileInfo::get_RegName); }
  std::wstring type_library_id() const { return text(&_QvtFileInfo::get_CLSID); }
  std::wstring version() const { return text(&_QvtFileInfo::get_VersionString); }
  LONG reg_mode() const { return number(&_QvtFileInfo::get_RegMode); }
  LONG size() const { return number(&_QvtFileInfo::get_FileSize); }
  LONG attributes() const { return number(&_QvtFileInfo::get_FileAttributes); }
  LONG major() const { return number(&_QvtFileInfo::get_MajVer); }
  LONG minor() const { return number(&_QvtFileInfo::get_MinVer); }
  bool is_shared() const { return truth(&_QvtFileInfo::get_IsShared); }
  bool is_program() const { return truth(&_QvtFileInfo::get_IsAppExe); }
  bool is_updated() const { return truth(&_QvtFileInfo::get_Updated); }
  double last_write_days() const {
    DATE date = -1;
    EXPECT_EQ(file_->get_LastWriteTime(&date), S_OK);
    return date;
  }
  // "yyyy-mm-dd hh:mm:ss".
  std::wstring last_write() const {
    SYSTEMTIME time;
    EXPECT_TRUE(VariantTimeToSystemTime(last_write_days(), &time));
    wchar_t text[40];
    std::swprintf(text, 40, L"%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond);
    return text;
  }
  SetupRecord installed() const {
    Pointer<_QvtFileInfo> file;
    EXPECT_EQ(file_->get_Installed(file.receive()), S_OK);
    return SetupRecord(file.get());
  }

 private:
  template <class Value>
  using Get = HRESULT (STDMETHODCALLTYPE _QvtFileInfo::*)(Value*);

  std::wstring text(Get<BSTR> member) const {
    String result;
    EXPECT_EQ((file_.get()->*member)(&result), S_OK);
    return std::wstring(result.view());
  }
  LONG number(Get<LONG> member) const {
    LONG result = -99;
    EXPECT_EQ((file_.get()->*member)(&result), S_OK);
    return result;
  }
  bool truth(Get<VARIANT_BOOL> member) const {
    VARIANT_BOOL result = 1;
    EXPECT_EQ((file_.get()->*member)(&result), S_OK);
    EXPECT_TRUE(result == VARIANT_TRUE || result == VARIANT_FALSE);
    return result == VARIANT_TRUE;
  }

  Pointer<_QvtFileInfo> file_;
};

// The data-access library is registered: where it is not, every name that is resolved leaves an
// entry in the error state.
class SetupClient : public WithErrorRecord {
 protected:
  static constexpr LONG kNoBoot = 1;
  static constexpr LONG kSimple = 2;

  SetupClient() { data_access_.set(L"C:\\Shared\\DAO\\dao360.dll"); }

  // True = failure.
  bool load(const std::wstring& path, LONG flags) {
    String file(path);
    VARIANT_BOOL failed = 1;
    EXPECT_EQ(global_->SetupInfoLoad(&file, files_.variable(), &flags, &failed), S_OK);
    EXPECT_TRUE(failed == VARIANT_TRUE || failed == VARIANT_FALSE);
    return failed == VARIANT_TRUE;
  }
  LONG count() {
    LONG result = -1;
    EXPECT_EQ(files_->Count(&result), S_OK);
    return result;
  }
  SetupRecord record(Value index) {
    Value item;
    EXPECT_EQ(files_->get_Item(&index, &item), S_OK);
    EXPECT_EQ(item.vt, VT_DISPATCH);
    return SetupRecord(item.vt == VT_DISPATCH ? item.pdispVal : nullptr);
  }
  std::wstring windows_folder() {
    String result;
    EXPECT_EQ(global_->Get_WinPath(&result), S_OK);
    return std::wstring(result.view());
  }
  std::wstring system_folder() {
    String result;
    EXPECT_EQ(global_->Get_SysPath(&result), S_OK);
    return std::wstring(result.view());
  }

  Pointer<_kwCollection> files_ = create<_kwCollection>(CLSID_kwCollection);
  const RegistryValue data_access_{HKEY_LOCAL_MACHINE,
                                   L"SOFTWARE\\Microsoft\\Shared Tools\\dao360.dll", L"Path"};
};

}  // namespace qv::tests
