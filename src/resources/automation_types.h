// Stands for the header that would be made from automation_types.idl. The system's headers already declare these types.
#pragma once

#include <oaidl.h>
