#include "archive/opened_archive.h"

#include <utility>

#include "archive/file_streams.h"
#include "automation/bytes.h"
#include "constants.h"
#include "frame/error_state.h"
#include "frame/file_retry.h"
#include "runtime/file_errors.h"
#include "runtime/file_numbers.h"

namespace qv::archive {
namespace {

namespace cpr = native::cpr;
using namespace File_Open_Const;

constexpr Long kNoArchive = frame::kFirstApplicationError;
constexpr Long kLaterVersion = frame::kFirstApplicationError + 1;

}  // namespace

OpenedArchive::OpenedArchive(Text source) : source_(std::move(source)) {
  open();
  try {
    length_bytes_ = static_cast<std::uint64_t>(file_numbers::length_bytes(number_));
    read_head();
  } catch (...) {
    frame::File_CloseRetry(number_);
    throw;
  }
}

OpenedArchive::~OpenedArchive() { frame::File_CloseRetry(number_); }

void OpenedArchive::open() {
  Long record_length = 0;
  const Long refusal = frame::File_OpenRetry(source_, O_RDONLY | O_BINARY, SH_DENYNO, record_length,
                                             number_, kPermissionDenied);
  if (refusal != 0) {
    raise({.number = refusal, .description = concat({L"Impossibile aprire il file ", source_})});
  }
}

void OpenedArchive::read_head() {
  FileSource stream(number_);
  cpr::DecodedHead decoded = cpr::decode_head(stream);
  switch (decoded.code) {
    case cpr::HeadCode::done:
      break;
    case cpr::HeadCode::later_version:
      raise({.number = kLaterVersion,
             .description = concat({L"Il file ", source_,
                                    L" è stato realizzato con una versione posteriore del "
                                    L"programma."})});
    default:
      refuse();
  }
  head_ = std::move(decoded.head);
}

void OpenedArchive::refuse() const {
  raise({.number = kNoArchive,
         .description = concat({L"Il file ", source_, L" non è un file compresso o è corrotto."})});
}

Text text_of_stored(std::string_view stored) {
  return text_of_bytes({reinterpret_cast<const std::uint8_t*>(stored.data()), stored.size()});
}

}  // namespace qv::archive
