// K19Subst, the editor launcher. The library starts it with a bilingual document; it opens the user's editor.
#include <exception>

#include "platform/console.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/components/editor_launcher.h"

int main(int argc, char** argv) {
  using namespace kavo;
  try {
    start_editor(editor_request_of(command_line(argc, argv)));
    return 0;
  } catch (const std::exception& reason) {
    ports().desktop->message_box(to_utf16(reason.what()), u"KAVO", MessageIcon::kExclamation);
    return 1;
  }
}
