#include "collections/command_line.h"

#include "automation/bytes.h"
#include "automation/class_object.h"
#include "automation/foreign_error.h"
#include "class_tables.h"
#include "collections/keyed_collection.h"
#include "constants.h"
#include "frame/error_state.h"
#include "native/cmdline/command_line.h"
#include "runtime/characters.h"

namespace qv::collections {
namespace {

using namespace CommandLineParmsExtrFlags;
using namespace CommandLineParmGetReturn;

constexpr Long kUnknownName = frame::kFirstApplicationError;
constexpr Long kRepeatedName = frame::kFirstApplicationError + 1;
constexpr wchar_t kNoName[] = L"NONAME";

// Stands for a blank between quotes while the line is split: the last character of the code page.
char16_t blank_mark() {
  const std::uint8_t byte = 255;
  wchar_t character = 0;
  put_bytes({&byte, 1}, &character);
  return static_cast<char16_t>(character);
}

Object<_QvCmdArg> make_argument(const Text& name, const Text& value, Long ordinal) {
  const Object<IUnknown> created(create_QvCmdArg());
  auto object = Object<_QvCmdArg>::from(created.get());
  QvCmdArg& argument = *own<QvCmdArg>(object, kQvCmdArgInfo);
  argument.Name = name;
  argument.Desc = value;
  argument.Ordinal = ordinal;
  return object;
}

// What lies in a collection of arguments may be anybody's.
Object<_QvCmdArg> argument_at(const Object<_kwCollection>& arguments, const Variant& index) {
  const auto object = item(arguments, index).to_object();
  auto argument = Object<_QvCmdArg>::from(object.get());
  if (object && !argument) raise(kTypeMismatch);
  return argument;
}

Text name_of(const Object<_QvCmdArg>& argument) {
  BSTR name = nullptr;
  check_foreign(argument, argument->get_Name(&name));
  return Text::adopt(name);
}

Text value_of(const Object<_QvCmdArg>& argument) {
  BSTR value = nullptr;
  check_foreign(argument, argument->get_Desc(&value));
  return Text::adopt(value);
}

Object<_kwCollection> list_of(const Object<_QvCmdArg>& argument) {
  Object<_kwCollection> list;
  check_foreign(argument, argument->get_List(list.receive()));
  return list;
}

Variant as_item(const Object<_QvCmdArg>& argument) {
  return Object<IDispatch>::from(argument.get());
}

// Puts a further occurrence of a name into the list of the first, which stands there too.
void add_occurrence(const Object<_QvCmdArg>& first, const Text& value, Long ordinal) {
  const auto list = list_of(first);
  if (count(list) == 0) {
    LONG first_ordinal = 0;
    check_foreign(first, first->get_Ordinal(&first_ordinal));
    add(list, as_item(make_argument({}, value_of(first), first_ordinal)));
  }
  add(list, as_item(make_argument({}, value, ordinal)));
}

class Extraction {
 public:
  Extraction(const Object<_kwCollection>& arguments, Long flags,
             const Object<_kwCollection>& valid_names)
      : arguments_(arguments), flags_(flags), valid_names_(valid_names) {}

  void run(const Text& command_line) {
    const char16_t mark = blank_mark();
    const std::u16string line = native::cmdline::working_line(code_units(command_line), mark);
    native::cmdline::Words words(line);
    while (const auto word = words.next()) {
      const auto argument = native::cmdline::read_argument(*word, mark);
      const Text name = argument.is_named ? upper_case(wide_characters(argument.name)) : kNoName;
      // The message quotes the whole line.
      if (valid_names_ && !exists(valid_names_, name)) {
        raise({.number = kUnknownName,
               .description = concat({L"Parametro ", wide_characters(line), L" sconosciuto."})});
      }
      add_argument(name, wide_characters(argument.value));
    }
  }

 private:
  void add_argument(const Text& name, const Text& value) {
    ++ordinal_;
    if (!exists(arguments_, name)) {
      return add(arguments_, as_item(make_argument(name, value, ordinal_)), name);
    }
    if ((flags_ & CMDL_UNIQUEPARMS) != 0) {
      raise({.number = kRepeatedName, .description = concat({L"Parametro duplicato: ", name})});
    }
    add_occurrence(argument_at(arguments_, name), value, ordinal_);
  }

  const Object<_kwCollection>& arguments_;
  Long flags_;
  const Object<_kwCollection>& valid_names_;
  Long ordinal_ = 0;
};

Long get_by_name(const Object<_kwCollection>& arguments, const Text& name, Long number,
                 Text& value) {
  if (!exists(arguments, name)) return CMDR_BADNAME;
  const auto argument = argument_at(arguments, name);
  if (number == 1) {
    value = value_of(argument);
    return CMDR_OK;
  }
  const auto list = list_of(argument);
  if (number > count(list)) return CMDR_NOMOREITEMS;
  value = value_of(argument_at(list, number));
  return CMDR_OK;
}

Long get_by_number(const Object<_kwCollection>& arguments, Text& name, Long number, Text& value) {
  const auto give = [&](const Object<_QvCmdArg>& argument, const Object<_QvCmdArg>& occurrence) {
    value = value_of(occurrence);
    name = name_of(argument);
    return CMDR_OK;
  };
  std::int64_t passed = 0;
  const Long names = count(arguments);
  for (Long index = 1; index <= names; ++index) {
    const auto argument = argument_at(arguments, index);
    const auto list = list_of(argument);
    const Long occurrences = count(list);
    if (occurrences == 0) {
      if (++passed == number) return give(argument, argument);
    } else if (passed + occurrences >= number) {
      return give(argument, argument_at(list, static_cast<Long>(number - passed)));
    } else {
      passed += occurrences;
    }
  }
  return CMDR_NOMOREITEMS;
}

}  // namespace

Object<_kwCollection> QvCmdArg::get_List() {
  if (!list_) list_ = make_collection();
  return list_;
}

Boolean CommandLineParmsExtr(const Text& CmdArg, const Object<_kwCollection>& cArgs, Long Flags,
                             const Object<_kwCollection>& ValidParms) {
  return frame::handled(L"KwRtLibMod.CommandLineParmsExtr", frame::kTakeError, True, [&] {
    if ((Flags & CMDL_APPEND) == 0) clear(cArgs);
    Extraction(cArgs, Flags, ValidParms).run(CmdArg);
    return False;
  });
}

Long CommandLineParmGet(const Object<_kwCollection>& cArgs, Text& ArgName, Long ItemNo,
                        Text& ArgValue) {
  return frame::handled(L"KwRtLibMod.CommandLineParmGet", frame::kTakeError, Long{CMDR_ERROR}, [&] {
    ArgValue = {};
    return ArgName.empty() ? get_by_number(cArgs, ArgName, ItemNo, ArgValue)
                           : get_by_name(cArgs, ArgName, ItemNo, ArgValue);
  });
}

}  // namespace qv::collections
