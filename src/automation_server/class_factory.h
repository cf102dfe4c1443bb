#pragma once

#include "automation_server/component_library.h"

namespace kavo {

// The class object of one row; `row` must outlive it. Never null; throws std::bad_alloc.
unique_interface<IClassFactory> make_class_factory(const ComponentClass& row);

}  // namespace kavo
