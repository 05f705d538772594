// Command lines as collections of named and unnamed arguments.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::collections {

// One argument. In a collection of a command line's arguments it is the first of its name; further
// ones stand with it in the list.
class QvCmdArg {
 public:
  Text Name;
  Text Desc;  // the value
  Long Ordinal = 0;

  // Made on first use.
  Object<_kwCollection> get_List();
  void putref_List(const Object<_kwCollection>& Value) { list_ = Value; }

 private:
  Object<_kwCollection> list_;
};

// True = failure, told by the error state; the arguments before it stay in cArgs. ValidParms may be
// Nothing.
Boolean CommandLineParmsExtr(const Text& CmdArg, const Object<_kwCollection>& cArgs, Long Flags,
                             const Object<_kwCollection>& ValidParms);

// A CommandLineParmGetReturn. The name of the argument found is filled in where none was given.
Long CommandLineParmGet(const Object<_kwCollection>& cArgs, Text& ArgName, Long ItemNo,
                        Text& ArgValue);

}  // namespace qv::collections
