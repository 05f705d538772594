// Watching a folder for changes.
#pragma once

#include "automation/connection_points.h"
#include "automation/text.h"

namespace qv::services {

class QvtNotify {
 public:
  explicit QvtNotify(ConnectionPoint& events) noexcept : events_(events) {}

  // Raises FileChangeEvent at every change, until a handler sets Cancel: False. True = failure,
  // told by the error state: the system refused, a handler raised an error, or TimeOut_ms passed
  // without a change ("Unexpected error."); -1 waits without limit. While it waits the thread
  // handles no messages.
  Boolean NotifyFileChange(const Text& Path, Boolean WatchSubTree, Long Filter, Long TimeOut_ms);

 private:
  bool is_cancelled_by_event(const Text& path, Long filter);

  ConnectionPoint& events_;
};

}  // namespace qv::services
