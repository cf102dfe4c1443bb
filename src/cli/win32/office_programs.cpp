#include "cli/office_programs.h"

namespace kavo {

// Registered with COM, if at all.
OfficePrograms::OfficePrograms() = default;
OfficePrograms::~OfficePrograms() = default;

}  // namespace kavo
