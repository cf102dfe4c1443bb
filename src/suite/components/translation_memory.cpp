#include "suite/components/translation_memory.h"

#include "common/pending_file.h"
#include "platform/ports.h"
#include "suite/memory/tmx_file.h"

namespace kavo {
namespace {

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
    file.write(empty_tmx());
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
