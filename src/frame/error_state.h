// The error state: the record, one per thread, through which nearly every function reports failure,
// and the way that every function with a handler of its own goes.
#pragma once

#include <utility>

#include "automation/variant.h"
#include "frame/error_record.h"
#include "runtime/err.h"

namespace qv::frame {

// Flags of Set_Error and Error_SetEx. kTakeError: the pending run-time error is what is recorded.
inline constexpr Long kTakeError = 0;
inline constexpr Long kAppendSystemText = 2;  // of the last system error, behind the description
inline constexpr Long kChain = 4;             // " < " and a Source onto the record that stands
inline constexpr Long kExplicit = 8;          // the fields given and nothing else

inline constexpr Long kFirstApplicationError = 20000;
inline constexpr Long kLastApplicationError = 29999;

// The fields of an error as arguments: a missing one leaves the record's field alone.
struct ErrorFields {
  Variant Number = Variant::missing();
  Variant Source = Variant::missing();
  Variant Description = Variant::missing();
  Variant HelpFile = Variant::missing();
  Variant HelpContext = Variant::missing();
  Variant LastDLLError = Variant::missing();
};

// The entry of all library code: takes the pending run-time error, lets the fields given replace
// what it says, records it, and clears it. With kChain or kExplicit the pending error plays no part
// and stays.
void Set_Error(const ErrorFields& fields, Long Flags = kTakeError,
               const Variant& Caption = Variant::missing(), Long Buttons = 0);

// This thread's current record.
QVtError& error_state();

// Makes a per-user record; the oldest of more than 1000 goes. True = failure.
Boolean Error_New(QVtError*& Target, const Text& UserId);
// The record of a user, null where there is none.
QVtError* user_error(const Text& UserId);

// The operations behind the public ones, for a user's record; "" is the thread's current record.
void Error_SetEx_for(const Text& UserId, const ErrorFields& fields, Long Flags,
                     const Variant& Caption, Long Buttons);
void Error_Set_for(const Text& UserId, const ErrorFields& fields);
void Reset_Error_for(const Text& UserId, Boolean Force);

// Runs a function's body with a handler of its own: on any error the pending error is recorded with
// these flags and this Source, and the function returns its failure value.
template <class Failure, class Body>
auto handled(const wchar_t* source, Long flags, Failure failure, Body&& body) -> decltype(body()) {
  err().forget_error();
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    err().set(current_run_time_error());
  }
  Set_Error({.Source = source}, flags);
  err().forget_error();
  return failure;
}

// One step of a stretch in resume-next mode: an error ends the step, stays pending, and what comes
// after goes on. True when the step got to its end.
template <class Body>
bool attempt(Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (...) {
    err().set(current_run_time_error());
    return false;
  }
}

// Public members of KwRtLib.
Text Error_Source();
Long Error_LastDLLError();
Text Error_HelpFile();
Long Error_HelpId();
Long Error_HelpContext();
Text Error_Description();
Long Error_Number();
void Error_Replace(const Variant& Number, const Variant& Source, const Variant& Description,
                   const Variant& HelpFile, const Variant& HelpContext,
                   const Variant& LastDLLError);
void Error_Lock();
void Error_Unlock();
void Reset_Error();
Boolean Check_Error();
[[noreturn]] void Raise_Error();
Long Last_Error();
Boolean Is_UserError();
void Get_Error(Variant& Number, Variant& Source, Variant& Description, Variant& HelpFile,
               Variant& HelpContext, Variant& LastDLLError);
void Error_SetEx(const Variant& Number, const Variant& Source, const Variant& Description,
                 const Variant& HelpFile, const Variant& HelpContext, const Variant& LastDLLError,
                 Long Flags, const Variant& Caption, Long Buttons);
// UseODBC is reserved and never read.
void Error_Set(const Variant& Number, const Variant& Source, const Variant& Description,
               const Variant& HelpFile, const Variant& HelpContext, const Variant& LastDLLError,
               Boolean UseODBC);

}  // namespace qv::frame
