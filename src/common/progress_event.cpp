#include "common/progress_event.h"

#include "platform/ports.h"

namespace kavo {

void ProgressEvent::report(std::int16_t percent) {
  if (percent <= last_) return;
  last_ = percent;
  if (handler_) handler_(percent);
  ports().desktop->process_messages();
}

}  // namespace kavo
