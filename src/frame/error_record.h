// The error record: what is known of a failure. The public class is the record itself.
#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "interfaces.h"

namespace qv::frame {

struct QVtError {
  Text Description;
  Long HelpContext = 0;
  Text HelpFile;
  Text HelpId;  // help context as text
  Long LastDLLError = 0;
  Long Number = 0;  // 0: no error
  Text Source;      // where it happened; outer levels follow behind " < "
  Boolean Locked;   // refuses every change through the set operations
  Text Caption;     // title of the message box
  Long Buttons = 0;
  Text UserId;  // key among the per-user records

  // Assigns every field but Caption and Buttons, which belong to the place where an error is shown.
  void CopyTo(const Object<_QVtError>& ErrMgr) const;
};

}  // namespace qv::frame
