// Compression of a byte buffer as a whole, and its checksum. The format of a compressed block is in
// docs/formats/compressed-block.md.
#pragma once

#include "automation/text.h"
#include "native/cpr/coder_result.h"

namespace qv::archive {

// The register of CRC-32 over the bytes, which the next call can go on with; a chain begins at -1.
Long PkCRC(Text& inBuffer, Long PrevCRC);

// True = failure, told by the error state: 20000 plus the coder's code (native/cpr/coder_result.h).
// The checksum is that of the original bytes in both, added to what outCrc holds; a failure leaves
// it alone. Input that is not of the ANSI code page is left as the page gives it back.
// outBuffer is always OrigSize characters long, also where the block holds fewer or is damaged.
Boolean PkUnzip(Text& inBuffer, Text& outBuffer, Long OrigSize, Long& outCrc);
// 20005: the result would not be smaller. outBuffer then is as long as the largest result, zeros.
Boolean PkZip(Text& inBuffer, Text& outBuffer, Long inDataType, Long& outCrc);

// Raises what the coder's refusal is to callers.
void check_coder(native::cpr::CoderCode code);

}  // namespace qv::archive
