// The values of the identifiers that the generated header declares.
#include <initguid.h>
// initguid.h first: it turns declarations of identifiers into definitions.
#include "K19FPW.h"
