// What a header made from automation_types.idl would declare: the system has it already.
#pragma once

#include <oaidl.h>
