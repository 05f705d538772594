#include "filters/filter_files.h"

#include <algorithm>
#include <new>
#include <utility>

#include "automation/bytes.h"
#include "constants.h"
#include "files/file_handles.h"
#include "filters/bit_map_store.h"
#include "filters/filter_records.h"
#include "filters/image_files.h"
#include "frame/error_state.h"
#include "native/zlog/raw_image.h"
#include "runtime/err.h"

namespace qv::filters {
namespace {

using namespace native::zlog;
using namespace File_Open_Const;
using files::system_handle;

constexpr Long kFailed = -1;

std::size_t bytes_of_transfer(const Text& buffer, Long size) noexcept {
  return std::min(buffer.size(), static_cast<std::size_t>(std::max<Long>(size, 0)));
}

// Replaces what a filter stands for; what it stood for before is released then.
void replace_map(const Object<_QvtBloomFilter>& filter, BitMap map) {
  const BFILTER before = record_of(filter);
  BFILTER record = before;
  adopt(record, std::move(map));
  set_record(filter, record);
  release(before);
}

template <class LoadImage>
Integer load(const Object<_QvtBloomFilter>& filter, LoadImage&& load_from_file) {
  record_of(filter);
  try {
    auto map = load_from_file();
    capture_last_dll_error();
    if (!map) return kFailed;
    replace_map(filter, std::move(*map));
    return 0;
  } catch (const std::bad_alloc&) {
    return kFailed;
  }
}

bool save(const BFILTER& record, HANDLE file) {
  const bool done = has_bit_map(record) && save_image(file, bits_of(record));
  capture_last_dll_error();
  return done;
}

// A record of all zeros is a filter without bits; one whose map is gone has no image.
Long image_size_bytes(const BFILTER& record) {
  if (record.hFilter != 0 && !has_bit_map(record)) return kFailed;
  return static_cast<Long>(raw_image_bytes(bits_of(record).limit()));
}

}  // namespace

Long Bloom_Open(const Text& FileName, Boolean WriteAccess) {
  const HANDLE file = CreateFileW(
      FileName.c_str(), WriteAccess ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ,
      nullptr, WriteAccess ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  capture_last_dll_error();
  return static_cast<Long>(reinterpret_cast<LONG_PTR>(file));
}

Boolean Bloom_Close(Long Handle) {
  // The platform would take -1, "no file", for the process itself and call that closed.
  const bool closed = Handle != kFailed && CloseHandle(system_handle(Handle)) != FALSE;
  capture_last_dll_error();
  return Boolean(!closed);
}

Long Bloom_Read(Long Handle, Text& Buffer, Long Size) {
  auto bytes = bytes_of_text(Buffer);
  DWORD read = 0;
  const BOOL done =
      Size >= 0 ? ReadFile(system_handle(Handle), bytes.data(),
                           static_cast<DWORD>(bytes_of_transfer(Buffer, Size)), &read, nullptr)
                : FALSE;
  capture_last_dll_error();
  put_bytes(bytes, Buffer.data());
  return done != FALSE ? static_cast<Long>(read) : kFailed;
}

Long Bloom_Write(Long Handle, Text& Buffer, Long Size) {
  const auto bytes = bytes_of_text(Buffer);
  DWORD written = 0;
  const BOOL done =
      Size >= 0 ? WriteFile(system_handle(Handle), bytes.data(),
                            static_cast<DWORD>(bytes_of_transfer(Buffer, Size)), &written, nullptr)
                : FALSE;
  capture_last_dll_error();
  put_bytes(bytes, Buffer.data());
  return done != FALSE ? static_cast<Long>(written) : kFailed;
}

Integer Bloom_Load(const Object<_QvtBloomFilter>& Filter, Long Handle) {
  return load(Filter, [&] { return load_image(system_handle(Handle)); });
}

Integer Bloom_LoadOld(const Object<_QvtBloomFilter>& Filter, Long Handle) {
  return load(Filter, [&] { return load_older_image(system_handle(Handle)); });
}

Integer Bloom_Save(const Object<_QvtBloomFilter>& Filter, Long Handle) {
  const BFILTER record = record_of(Filter);
  if (!save(record, system_handle(Handle))) return kFailed;
  set_record(Filter, record);
  return 0;
}

Boolean BloomSaveExt(Text& FileName, const Object<_QvtBloomFilter>& flt1,
                     const Object<_QvtBloomFilter>& flt2) {
  // The error line of compiled code is 0.
  const Text source = concat({kLibraryName, L".KwRtLibMod.BloomSaveExt, 0 (", FileName, L")"});
  Long handle = 0;
  const Boolean failed = frame::handled(source.c_str(), frame::kChain, True, [&] {
    Long attributes = 0;
    if (files::File_Open32(FileName, O_RDWR + O_CREAT + O_TRUNC + O_BINARY, SH_DENYRW, attributes,
                           handle)) {
      // Its error stands in the error state; here its chain only grows.
      raise(BloomError_Const::ERR_BLOOMSAVE);
    }
    const BFILTER first = record_of(flt1);
    const BFILTER second = record_of(flt2);
    if (!save(first, system_handle(handle)) || !save(second, system_handle(handle))) {
      raise({.number = BloomError_Const::ERR_BLOOMSAVE, .description = kSaveFailed});
    }
    return False;
  });
  files::File_Close32(handle);
  return failed;
}

Boolean BloomLoadExt(Text& FileName, const Object<_QvtBloomFilter>& flt1,
                     const Object<_QvtBloomFilter>& flt2) {
  Long handle = 0;
  const Boolean failed = frame::handled(L"KwRtLibMod.BloomLoadExt", frame::kTakeError, True, [&] {
    Long attributes = 0;
    if (files::File_Open32(FileName, O_RDONLY + O_BINARY, SH_DENYWR, attributes, handle)) {
      raise(-1);
    }
    auto first = load_image(system_handle(handle));
    auto second = first ? load_image(system_handle(handle)) : std::nullopt;
    capture_last_dll_error();
    if (!first || !second) {
      raise({.number = BloomError_Const::ERR_BLOOMLOAD,
             .description = L"Errore durante il caricamento di in filtro."});
    }
    // What the filters stood for is not freed: that is for the caller to do before.
    BFILTER record{};
    adopt(record, std::move(*first));
    set_record(flt1, record);
    adopt(record, std::move(*second));
    set_record(flt2, record);
    return False;
  });
  files::File_Close32(handle);
  return failed;
}

Long Bloom_CopyBufferSize(const Object<_QvtBloomFilter>& Filter) {
  const BFILTER record = record_of(Filter);
  const Long size = image_size_bytes(record);
  set_record(Filter, record);
  return size;
}

Long Bloom_CopyTo(const Object<_QvtBloomFilter>& Filter, Array<Byte>& Buffer) {
  const Long size = Bloom_CopyBufferSize(Filter);
  if (size < 0) return size;
  // An array can't be empty.
  Buffer.redimension(0, static_cast<std::size_t>(std::max<Long>(size, 1)));
  copy_to_raw_image(bits_of(record_of(Filter)), Buffer.lock().span());
  return size;
}

Long Bloom_CopyToString(const Object<_QvtBloomFilter>& Filter, Text& Buffer) {
  const Long size = Bloom_CopyBufferSize(Filter);
  if (size < 0) return size;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::max<Long>(size, 1)), ' ');
  copy_to_raw_image(bits_of(record_of(Filter)), bytes);
  Buffer = text_of_bytes(bytes);
  return size;
}

Long Bloom_CopyFrom(const Object<_QvtBloomFilter>& Filter, const Array<Byte>& Buffer) {
  const auto elements = Buffer.lock();
  auto map = from_raw_image(elements.span());
  if (!map) return kFailed;
  replace_map(Filter, std::move(*map));
  return static_cast<Long>(elements.size());
}

Long Bloom_CopyFromString(const Object<_QvtBloomFilter>& Filter, Text& Buffer) {
  const BFILTER before = record_of(Filter);
  const std::size_t size = raw_image_bytes(before.Bits);
  auto bytes = bytes_of_text(Buffer);
  round_trip(Buffer);
  // The caller answers for the length: what its buffer lacks is taken as clear bits.
  bytes.resize(size);
  auto map = from_raw_image(bytes);
  if (!map) return kFailed;
  if (map->bits() != before.Bits) {
    if (static_cast<Long>(words_for(map->bits())) != before.Words) {
      raise({.number = BloomError_Const::ERR_BLOOMSAVE,
             .description = L"Filtro incompatibile con la richiesta."});
    }
    map = resized(std::as_const(*map).view(), before.Bits);
    // An application may have written a negative number there.
    if (!map) return kFailed;
  }
  replace_map(Filter, std::move(*map));
  return static_cast<Long>(size);
}

}  // namespace qv::filters
