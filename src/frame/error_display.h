// What becomes of a failure that the error state holds: its text, a box that shows it, a line in a
// log. Nothing here raises.
#pragma once

#include "automation/variant.h"

namespace qv::frame {

// The system's text for a code of its own, on one line; "" for a code that it does not know.
Text SystemError(Long dwMessageId);

// Takes over the last error of a server that has the method
// LastError(Number, Source, Description, HelpFile, HelpContext, LastDLLError), all six by
// reference. A server without it leaves the record empty.
void SetSvrError(const Variant& Svr);

// Appends a line to a log file. What fails goes unsaid: a file that somebody else holds is tried
// again for some eight seconds, with the application's events running. The line is
//   PREFIX>dd-mm-yyyy hh:nn MESSAGE [CRC]
// with the parts that were asked for. The check value covers date, time and message.
void Log_Write(const Text& LogFileName, const Text& msg, Long Flags, const Variant& Prefix);

// The text that Disp_Error would show.
Text Error_Message(const Variant& msg, Long Flags);

// Puts the text together, shows it unless Flags hold DE_NOSHOW, and logs it where a LogFile is
// given; ends with the record unlocked. RetBuffer receives the text: with a msg it begins anew,
// else the text goes behind what it held. The result is the button pressed, 1 where no box was
// shown.
Long Disp_ErrorEx(const Variant& msg, const Variant& Butt, const Variant& LogFile, Long Flags,
                  const Variant& Prefix, const Text& Title, Text& RetBuffer, const Text& HelpFile,
                  const Text& HelpId);
Long Disp_Error(const Variant& msg, const Variant& Butt, const Variant& LogFile, Long Flags,
                const Variant& Prefix, const Text& Title);

}  // namespace qv::frame
