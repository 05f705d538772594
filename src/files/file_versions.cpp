#include "files/file_versions.h"

#include "files/version_block.h"
#include "frame/error_state.h"
#include "text/codecs.h"

namespace qv::files {
namespace {

constexpr Long kNoResource = 20000;
constexpr Long kUnreadable = 20001;
constexpr Long kNoNumbers = 20002;

// High and low half of a version, as the fixed record holds them.
struct VersionNumbers {
  Long high;
  Long low;
};

using HighAndLow = DWORD VS_FIXEDFILEINFO::*;

VersionNumbers read_numbers(const Text& file_name, HighAndLow high, HighAndLow low) {
  VersionBlock block;
  switch (block.read(file_name)) {
    case VersionBlock::Reading::kNone:
      raise(kNoResource);
    case VersionBlock::Reading::kUnreadable:
      raise(kUnreadable);
    case VersionBlock::Reading::kRead:
      break;
  }
  const auto info = block.fixed_info();
  if (!info) raise(kNoNumbers);
  return {static_cast<Long>((*info).*high), static_cast<Long>((*info).*low)};
}

Boolean put_numbers(const wchar_t* source, const Text& file_name, HighAndLow high, HighAndLow low,
                    Long& Major, Long& Minor, Long& Revision, Long& MS, Long& LS) {
  return frame::handled(source, frame::kTakeError, True, [&] {
    const VersionNumbers version = read_numbers(file_name, high, low);
    Major = text::Hi_Word(version.high);
    Minor = text::Lo_Word(version.high);
    Revision = version.low;
    MS = version.high;
    LS = version.low;
    return False;
  });
}

Text GetVersionString(const Text& sFile, std::wstring_view key) {
  const auto failed = [](Long number) {
    frame::Set_Error({.Number = number});
    return Text();
  };
  VersionBlock block;
  switch (block.read(sFile)) {
    case VersionBlock::Reading::kNone:
      return failed(kNoResource);
    case VersionBlock::Reading::kUnreadable:
      return failed(kUnreadable);
    case VersionBlock::Reading::kRead:
      break;
  }
  auto found = block.text(key);
  return found ? *std::move(found) : failed(kUnreadable);
}

}  // namespace

Boolean GetFileVersion(const Text& FileName, Long& Major, Long& Minor, Long& Revision,
                       Long& dwFileVersionMS, Long& dwFileVersionLS) {
  return put_numbers(L"KwRtLibMod.GetFileVersion", FileName, &VS_FIXEDFILEINFO::dwFileVersionMS,
                     &VS_FIXEDFILEINFO::dwFileVersionLS, Major, Minor, Revision, dwFileVersionMS,
                     dwFileVersionLS);
}

Boolean GetProductVersion(const Text& FileName, Long& Major, Long& Minor, Long& Revision,
                          Long& dwFileVersionMS, Long& dwFileVersionLS) {
  return put_numbers(L"KwRtLibMod.GetProductVersion", FileName,
                     &VS_FIXEDFILEINFO::dwProductVersionMS, &VS_FIXEDFILEINFO::dwProductVersionLS,
                     Major, Minor, Revision, dwFileVersionMS, dwFileVersionLS);
}

Text GetInfoProductVersion(const Text& sFile) { return GetVersionString(sFile, L"ProductVersion"); }
Text GetInfoProductName(const Text& sFile) { return GetVersionString(sFile, L"ProductName"); }
Text GetInfoLegalCopyright(const Text& sFile) { return GetVersionString(sFile, L"LegalCopyright"); }
Text GetInfoInternalName(const Text& sFile) { return GetVersionString(sFile, L"InternalName"); }
Text GetInfoFileVersion(const Text& sFile) { return GetVersionString(sFile, L"FileVersion"); }
Text GetInfoFileDescription(const Text& sFile) {
  return GetVersionString(sFile, L"FileDescription");
}
Text GetInfoCompanyName(const Text& sFile) { return GetVersionString(sFile, L"CompanyName"); }

}  // namespace qv::files
