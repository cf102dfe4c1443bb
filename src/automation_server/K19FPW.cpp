// K19FPW.dll: the library that hosts load.
#include "K19FPW.h"

#include "automation_server/K19FPWObj_skin.h"
#include "automation_server/component_library.h"

namespace kavo {

const ComponentLibrary& component_library() {
  static const ComponentClass classes[] = {
      {CLSID_K19FPWObj, u"K19FPW.K19FPWObj", u"KAVO File Processing Wizard",
       [](const ComponentClass&) { return make_K19FPWObj(); }},
  };
  static const ComponentLibrary library{classes, &LIBID_K19FPW};
  return library;
}

}  // namespace kavo
