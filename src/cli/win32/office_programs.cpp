#include "cli/office_programs.h"

namespace kavo {

// The programs are registered with COM, if they are installed.
OfficePrograms::OfficePrograms() = default;
OfficePrograms::~OfficePrograms() = default;

}  // namespace kavo
