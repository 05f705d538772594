// Raw printing through the spooler. All but the last three members work on the jobs of one KwRtLib
// object; another object does not see them. True = failure everywhere.
#pragma once

#include "automation/text.h"
#include "frame/global_object.h"

namespace qv::printing {

// The number of a job is the spooler's handle of its printer. Where that is wider than a Long, or
// is still the number of an aborted job, the object counts: 1, 2, 3... An unknown number is
// run-time error 5 in the error state.
Boolean DirectCloseAllPrinters(frame::KwRtLib& object);
// RetHandle is never written: the language's programs that call this rely on nothing coming back.
Boolean DirectOpenPrinter(frame::KwRtLib& object, const Text& PrinterName, Long& RetHandle,
                          const Text& DocName);
Boolean DirectWritePrinter(frame::KwRtLib& object, Long Handle, const Text& Buffer);
Boolean DirectStartPage(frame::KwRtLib& object, Long Handle);
Boolean DirectEndPage(frame::KwRtLib& object, Long Handle);
Boolean DirectClosePrinter(frame::KwRtLib& object, Long Handle);
// The number stays known, though nothing but DirectCloseAllPrinters works on it any more.
Boolean DirectAbortPrinter(frame::KwRtLib& object, Long Handle);

// One job of one page. A file goes out in blocks of BufferSize bytes, each by way of Buffer: it
// ends as the last of them, or as BufferSize blanks for an empty file. Run-time errors in the error
// state, beside those of opening a file: 11 for a BufferSize of 0, 5 for a negative one. A failure
// leaves the error state unlocked.
Boolean DirectPrint3(const Text& PrinterName, Text& Buffer, const Text& DocName,
                     const Text& DataType, const Text& FileName, Long BufferSize);
Boolean DirectPrint2(const Text& PrinterName, Text& Buffer, const Text& DocName,
                     const Text& DataType);
Boolean DirectPrint(const Text& PrinterName, Text& Buffer);

}  // namespace qv::printing
