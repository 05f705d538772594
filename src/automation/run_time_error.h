// Run-time errors of the calling language: the one exception type of the library, and the way
// between it and the HRESULTs of Automation.
#pragma once

#include "automation/text.h"

namespace qv {

// Numbers that the library's own code names; the full list of texts is in run_time_error.cpp.
inline constexpr Long kInvalidProcedureCall = 5;
inline constexpr Long kOverflow = 6;
inline constexpr Long kOutOfMemory = 7;
inline constexpr Long kSubscriptOutOfRange = 9;
inline constexpr Long kDivisionByZero = 11;
inline constexpr Long kTypeMismatch = 13;
inline constexpr Long kOutOfStringSpace = 14;
inline constexpr Long kObjectVariableNotSet = 91;
inline constexpr Long kInvalidUseOfNull = 94;
inline constexpr Long kObjectDoesNotSupportMember = 438;
inline constexpr Long kAutomationError = 440;
inline constexpr Long kObjectDoesNotSupportAction = 445;
inline constexpr Long kKeyAlreadyAssociated = 457;

// Name of the library's project: the Source of an error that gives no other.
inline constexpr const wchar_t* kLibraryName = L"QvRtLibOle";

struct RunTimeError {
  Long number = 0;
  Text source{};  // empty: the library itself, kLibraryName
  Text description{};
  Text help_file{};
  Long help_context = 0;
};

// The language's text for a run-time error number; for a number of no other meaning
// "Application-defined or object-defined error".
std::wstring_view run_time_error_text(Long number) noexcept;

// Raise with the language's own text. The second form sets every field; an empty description takes
// the language's own. A number that the language can't raise (0, or above 65535) is run-time error
// 5 instead.
[[noreturn]] void raise(Long number);
[[noreturn]] void raise(RunTimeError error);

// An HRESULT that carries a run-time error: 800A0000 hexadecimal plus its number. Numbers that are
// HRESULTs already (negative ones) stay.
HRESULT to_hresult(Long number) noexcept;
// The run-time error that the calling language makes of a failed HRESULT.
Long to_error_number(HRESULT result) noexcept;
// Raises what a failed HRESULT of an Automation service means; S_OK and other successes pass.
void check(HRESULT result);

// For use inside a catch block that catches everything: the exception at hand as a run-time error
// (memory shortage is 7, a length beyond all limits 14, anything foreign 440).
RunTimeError current_run_time_error() noexcept;

}  // namespace qv
