#include "frame/error_state.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "automation/thread_state.h"
#include "runtime/system_text.h"

namespace qv::frame {
namespace {

constexpr Long kNoErrorNumber = 65535;  // a run-time error of this number means no error
constexpr std::size_t kMaxUserErrors = 1000;

struct ErrorStates {
  QVtError current;
  std::vector<std::unique_ptr<QVtError>> users;  // oldest first
};

ErrorStates& states() { return per_thread<ErrorStates>(); }

bool same_key(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

auto find_user(const Text& UserId) {
  return std::ranges::find_if(states().users,
                              [&](const auto& record) { return same_key(record->UserId, UserId); });
}

QVtError& target_for(const Text& UserId) {
  if (UserId.empty()) return error_state();
  QVtError* record = user_error(UserId);
  if (record == nullptr && Error_New(record, UserId)) return error_state();
  return *record;
}

void store_help_context(QVtError& target, const Variant& given) {
  if (given.is_missing()) return;
  if (given.is_text()) {
    target.HelpId = given.to_text();
  } else {
    target.HelpContext = given.to_long();
  }
}

void store_if_given(Long& field, const Variant& given) {
  if (!given.is_missing()) field = given.to_long();
}

void store_if_given(Text& field, const Variant& given) {
  if (!given.is_missing()) field = given.to_text();
}

void set_chained(QVtError& target, const ErrorFields& given) {
  if (!given.Source.is_missing()) {
    target.Source = concat({target.Source, L" < ", given.Source.to_text()});
  }
  if (!given.Description.is_missing()) {
    target.Description = concat({given.Description.to_text(), target.Description});
  }
}

void set_explicit(QVtError& target, const ErrorFields& given, const Variant& Caption,
                  Long Buttons) {
  store_if_given(target.Number, given.Number);
  store_if_given(target.Source, given.Source);
  store_if_given(target.Description, given.Description);
  store_if_given(target.HelpFile, given.HelpFile);
  store_if_given(target.LastDLLError, given.LastDLLError);
  store_if_given(target.Caption, Caption);
  store_help_context(target, given.HelpContext);
  target.Buttons = Buttons;
}

bool is_application_error(Long number) noexcept {
  return number >= kFirstApplicationError && number <= kLastApplicationError;
}

void set_description(QVtError& target, const Text& given) {
  if (is_application_error(target.Number) || target.Description.empty()) {
    target.Description = given;
  } else {
    target.Description = concat({given, L"\r\n", target.Description});
  }
}

void take_pending(QVtError& target, const Err& pending) {
  target.Number = pending.Number;
  target.Description = pending.Description;
  target.HelpContext = pending.HelpContext;
  target.HelpFile = pending.HelpFile;
  target.LastDLLError = pending.LastDllError;
  target.Source = pending.Source;
}

// An argument that can't be converted leaves its field as it is.
void take_given(QVtError& target, const ErrorFields& given) {
  attempt([&] { store_if_given(target.Number, given.Number); });
  attempt([&] { store_if_given(target.Source, given.Source); });
  attempt([&] {
    if (!given.Description.is_missing()) set_description(target, given.Description.to_text());
  });
  attempt([&] { store_if_given(target.HelpFile, given.HelpFile); });
  attempt([&] { store_help_context(target, given.HelpContext); });
  attempt([&] { store_if_given(target.LastDLLError, given.LastDLLError); });
}

bool is_full(Long flags) noexcept { return (flags & (kChain | kExplicit)) == 0; }

void record(const Text& UserId, const Err& pending, const ErrorFields& fields, Long Flags,
            const Variant& Caption, Long Buttons) {
  QVtError& target = target_for(UserId);
  if (target.Locked) return;
  if ((Flags & kChain) != 0) {
    set_chained(target, fields);
  } else if (!is_full(Flags)) {
    set_explicit(target, fields, Caption, Buttons);
  } else {
    take_pending(target, pending);
    target.Buttons = Buttons;
    store_if_given(target.Caption, Caption);
    take_given(target, fields);
  }
}

void clear(QVtError& record) {
  record.Number = 0;
  record.Description = Text();
  record.HelpContext = 0;
  record.HelpFile = Text();
  record.HelpId = Text();
  record.LastDLLError = 0;
  record.Source = Text();
}

void assign_if_given(Variant& variable, const Variant& field) {
  attempt([&] {
    if (!variable.is_missing()) variable.assign(field);
  });
}

}  // namespace

QVtError& error_state() { return states().current; }

QVtError* user_error(const Text& UserId) {
  const auto found = find_user(UserId);
  return found != states().users.end() ? found->get() : nullptr;
}

Boolean Error_New(QVtError*& Target, const Text& UserId) {
  return handled(L"QvRtLibOle.KwRtLibMod.Error_New, 0", kChain, True, [&] {
    auto& users = states().users;
    if (users.size() > kMaxUserErrors) users.erase(users.begin());
    if (user_error(UserId) != nullptr) raise(kKeyAlreadyAssociated);
    users.push_back(std::make_unique<QVtError>());
    Target = users.back().get();
    Target->UserId = UserId;
    return False;
  });
}

void Set_Error(const ErrorFields& fields, Long Flags, const Variant& Caption, Long Buttons) {
  if (!is_full(Flags)) {
    attempt([&] { record(L"", Err(), fields, Flags, Caption, Buttons); });
    return;
  }
  attempt([&] {
    Err pending = std::move(err());
    clear_errors();
    if (pending.Number == kNoErrorNumber) pending.Number = 0;
    Text help_context = decimal(pending.HelpContext);
    attempt([&] { store_if_given(pending.Number, fields.Number); });
    attempt([&] { store_if_given(pending.Description, fields.Description); });
    attempt([&] { store_if_given(help_context, fields.HelpContext); });
    attempt([&] { store_if_given(pending.HelpFile, fields.HelpFile); });
    attempt([&] { store_if_given(pending.LastDllError, fields.LastDLLError); });
    attempt([&] { store_if_given(pending.Source, fields.Source); });
    if ((Flags & kAppendSystemText) != 0) {
      pending.Description =
          concat({pending.Description, L"\r\n", system_text(pending.LastDllError)});
    }
    // What failed to convert above was dealt with; it is not the error to be recorded.
    err().clear();
    // The help context goes on as text, so that it ends up in HelpId.
    record(L"", Err(),
           {.Number = pending.Number,
            .Source = std::move(pending.Source),
            .Description = std::move(pending.Description),
            .HelpFile = std::move(pending.HelpFile),
            .HelpContext = std::move(help_context),
            .LastDLLError = pending.LastDllError},
           Flags, Caption, Buttons);
  });
}

void Error_SetEx_for(const Text& UserId, const ErrorFields& fields, Long Flags,
                     const Variant& Caption, Long Buttons) {
  record(UserId, is_full(Flags) ? application_error() : Err(), fields, Flags, Caption, Buttons);
}

void Error_Set_for(const Text& UserId, const ErrorFields& fields) {
  const Err pending = application_error();
  QVtError& target = target_for(UserId);
  if (target.Locked) return;
  take_pending(target, pending);
  take_given(target, fields);
}

void Reset_Error_for(const Text& UserId, Boolean Force) {
  attempt([&] {
    if (UserId.empty()) {
      QVtError& current = error_state();
      if (!current.Locked || Force) clear(current);
      return;
    }
    const auto found = find_user(UserId);
    if (found == states().users.end()) return;
    if (!(*found)->Locked || Force) states().users.erase(found);
  });
}

Text Error_Source() { return error_state().Source; }
Long Error_LastDLLError() { return error_state().LastDLLError; }
Text Error_HelpFile() { return error_state().HelpFile; }
Long Error_HelpId() { return Variant(error_state().HelpId).to_long(); }
Long Error_HelpContext() { return error_state().HelpContext; }
Text Error_Description() { return error_state().Description; }
Long Error_Number() { return error_state().Number; }

void Error_Replace(const Variant& Number, const Variant& Source, const Variant& Description,
                   const Variant& HelpFile, const Variant& HelpContext,
                   const Variant& LastDLLError) {
  QVtError& target = error_state();
  if (target.Locked) return;
  store_if_given(target.Number, Number);
  store_if_given(target.Source, Source);
  store_if_given(target.Description, Description);
  store_if_given(target.HelpFile, HelpFile);
  store_if_given(target.HelpContext, HelpContext);
  store_if_given(target.LastDLLError, LastDLLError);
}

void Error_Lock() { error_state().Locked = True; }
void Error_Unlock() { error_state().Locked = False; }
void Reset_Error() { Reset_Error_for(L"", False); }
Boolean Check_Error() { return error_state().Number != 0; }
Long Last_Error() { return error_state().Number; }
Boolean Is_UserError() { return is_application_error(error_state().Number); }

void Get_Error(Variant& Number, Variant& Source, Variant& Description, Variant& HelpFile,
               Variant& HelpContext, Variant& LastDLLError) {
  const QVtError& record = error_state();
  assign_if_given(Number, record.Number);
  assign_if_given(Source, record.Source);
  assign_if_given(Description, record.Description);
  assign_if_given(HelpFile, record.HelpFile);
  if (HelpContext.is_text()) {
    assign_if_given(HelpContext, record.HelpId);
  } else {
    assign_if_given(HelpContext, record.HelpContext);
  }
  assign_if_given(LastDLLError, record.LastDLLError);
}

void Raise_Error() {
  const QVtError& record = error_state();
  // The language raises numbers of 16 bits, and negative ones as the HRESULTs they are.
  const bool can_be_raised = record.Number != 0 && record.Number <= 0xFFFF;
  if (!can_be_raised) raise(kInvalidProcedureCall);
  raise({.number = record.Number,
         .source = record.Source,
         .description = record.Description,
         .help_file = record.HelpFile,
         .help_context = record.HelpContext});
}

void Error_SetEx(const Variant& Number, const Variant& Source, const Variant& Description,
                 const Variant& HelpFile, const Variant& HelpContext, const Variant& LastDLLError,
                 Long Flags, const Variant& Caption, Long Buttons) {
  Error_SetEx_for(L"", {Number, Source, Description, HelpFile, HelpContext, LastDLLError}, Flags,
                  Caption, Buttons);
}

void Error_Set(const Variant& Number, const Variant& Source, const Variant& Description,
               const Variant& HelpFile, const Variant& HelpContext, const Variant& LastDLLError,
               Boolean /*UseODBC*/) {
  Error_Set_for(L"", {Number, Source, Description, HelpFile, HelpContext, LastDLLError});
}

}  // namespace qv::frame
