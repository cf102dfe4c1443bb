#include "suite/components/translation_memory.h"

#include "common/pending_file.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// A memory without a unit, for every language: what an editor opens at once.
constexpr std::string_view kEmptyMemory =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<tmx version=\"1.4\">\n"
    "<header creationtool=\"K19Suite\" creationtoolversion=\"1\" segtype=\"paragraph\" o-tmf=\"K19Suite\" "
    "adminlang=\"en\" srclang=\"*all*\" datatype=\"unknown\"/>\n"
    "<body>\n</body>\n</tmx>\n";

std::u16string ask(bool to_save, std::u16string_view title) {
  FileQuestion question;
  question.to_save = to_save;
  question.title = title;
  question.filter = u"Translation memories|*.tmx||";
  question.extension = u"tmx";
  return ports().desktop->ask_file(question).value_or(u"");
}

Value create_new(std::span<Argument>) {
  std::u16string path = ask(true, u"New translation memory");
  if (!path.empty()) {
    PendingFile file(path);
    file.write(kEmptyMemory);
    file.commit();
  }
  return path;
}

Value open_existing(std::span<Argument>) { return ask(false, u"Open translation memory"); }

}  // namespace

TranslationMemory::TranslationMemory()
    : TableObject({
          {u"CreateNew", MemberKind::kMethod, 0, 0, create_new},
          {u"OpenExisting", MemberKind::kMethod, 0, 0, open_existing},
      }) {}

}  // namespace kavo
