#pragma once

#include "platform/win32/owners.h"

namespace kavo {

// A new K19FPWObj behind the dual interface _K19FPWObj. Throws what the class's constructor raises.
unique_interface<IUnknown> make_K19FPWObj();

}  // namespace kavo
