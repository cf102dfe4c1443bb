// What shows forms to a person on this system: windows on Windows, questions in the terminal elsewhere.
#pragma once

#include "forms/form.h"

namespace kavo {

// There is one per process. It keeps nothing between two forms, so any thread may show forms with it. On Windows show()
// throws `failure` with the system's number when no window can be made.
FormPresenter& system_presenter();

}  // namespace kavo
