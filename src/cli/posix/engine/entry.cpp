// What the command calls in the library that holds the Office engine.
#include "office/libreoffice/office_engine.h"

extern "C" void kavo_office_engine_begin() { kavo::register_office_engine(); }

extern "C" void kavo_office_engine_end() { kavo::end_office_engine(); }
