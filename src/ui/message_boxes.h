// Message boxes: the class that stands for them, and the one box that the library itself shows.
#pragma once

#include "automation/text.h"

namespace qv::ui {

// Declares message, input and progress boxes, so that programs written for them bind and run. No
// box is behind it: every member takes what it is given and does nothing.
class QvMsgBox {
 public:
  static Boolean get_QueryStatus() { return False; }
  template <class... Arguments>
  static Long Message_BoxEx(const Arguments&...) {
    return 0;
  }
  template <class... Arguments>
  static Long Message_Box(const Arguments&...) {
    return 0;
  }
  template <class... Arguments>
  static Long Progress_BoxEx(const Arguments&...) {
    return 0;
  }
  static void put_Input_Text(const Text&) {}
  static Text get_Input_Text() { return {}; }
  static void put_Progress_Value(Long) {}
  static Long get_Progress_Value() { return 0; }
  template <class... Arguments>
  static Long Progress_Box(const Arguments&...) {
    return 0;
  }
  template <class... Arguments>
  static Long Input_BoxEx(const Arguments&...) {
    return 0;
  }
  template <class... Arguments>
  static Long Input_Box(const Arguments&...) {
    return 0;
  }
  static void Close_Box() {}
};

// Shows an error and gives the button pressed. The external form "QvAsycFrm.QvAsyncForm" shows it
// where it is installed and works; else the language's MsgBox does, which has no help. Raises
// nothing and leaves the error state alone.
Long Show_ErrorBox(const Text& Prompt, Long Buttons, const Text& Title, const Text& HelpFile,
                   const Text& HelpId);

}  // namespace qv::ui
