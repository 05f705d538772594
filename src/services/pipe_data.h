// One request or one answer of a named pipe.
#pragma once

#include "automation/text.h"

namespace qv::services {

class kwPipeData {
 public:
  static Long get_MaxPacketSize() noexcept;
  // True = failure, told by the error state: beyond MaxPacketSize nothing is added.
  Boolean AppendData(const Text& Buffer);
  // Run-time error 20000 beyond MaxPacketSize; the data stay.
  void put_ReqData(const Text& Value);
  const Text& get_ReqData() const noexcept { return data_; }

  // Free for the application's use.
  Long ReqId = 0;
  Date ReqDate;

 private:
  Text data_;  // at most MaxPacketSize characters, each a byte
};

}  // namespace qv::services
