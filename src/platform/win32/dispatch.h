// Late-bound objects across the system's automation boundary, in both directions.
#pragma once

#include "platform/automation.h"
#include "platform/win32/owners.h"

namespace kavo {

// An IDispatch over any late-bound object: this is how the suite's components and test doubles are handed to
// automation hosts. Serves by-value and by-reference arguments; named arguments are refused, because the members'
// tables have no parameter names. A failure comes out as DISP_E_EXCEPTION with number, source and description. An
// object that came from automation in the first place is handed out as it is. Never null; throws std::bad_alloc.
unique_interface<IDispatch> make_dispatch(ObjectRef object);

// A late-bound object over an IDispatch, of which it holds a reference. Not null.
ObjectRef make_object(IDispatch* dispatch);

// How many of make_dispatch's objects are alive in this module: a library must not be unloaded while there are any.
long live_dispatch_objects() noexcept;

}  // namespace kavo
