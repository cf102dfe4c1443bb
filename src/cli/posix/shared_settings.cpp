#include "cli/shared_settings.h"

namespace kavo {

bool settings_are_shared() { return false; }

}  // namespace kavo
