#pragma once

#include "office/standin/program.h"

namespace kavo::test {

// An object of the program: "Application", its collection, "Document", "Template", "Fields" or "Field3". It knows the
// members that the real one has, as far as conversions use them, writes every call down and answers it. "File" is a
// document that will be opened when it is told its file. `program` must outlive it. Never null.
unique_interface<IDispatch> make_recorded_object(Program& program, std::string name);

}  // namespace kavo::test
