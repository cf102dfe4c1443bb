#include "cli/office_programs.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/automation.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/program_folder.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr const char16_t* kIdentifiers[] = {u"Word.Application", u"PowerPoint.Application", u"Excel.Application"};
// Where the engine is, from the folder of the command: after building, and after installing.
constexpr const char* kEnginePlaces[] = {"/libkavo_office_engine.so", "/../lib/kavo/libkavo_office_engine.so"};

[[noreturn]] void throw_not_there(std::u16string_view identifier, const std::u16string& what_to_do) {
  throw failure(FailureNumber::kCannotCreateObject,
                std::u16string(identifier) + u" is served by LibreOffice: " + what_to_do);
}

void* loaded_engine = nullptr;  // never unloaded, because LibreOffice's libraries cannot be

// The engine replaces our factories by its own.
void load_engine(std::u16string_view identifier) {
  const std::string folder = path_to_host(program_folder());
  const auto is_there = [&](const char* place) { return ::access((folder + place).c_str(), F_OK) == 0; };
  const auto place = std::ranges::find_if(kEnginePlaces, is_there);
  if (place == std::end(kEnginePlaces))
    throw_not_there(
        identifier,
        u"the engine is missing; install the package kavo-office, or, where kavo was built from its source, "
        u"libreoffice-dev, libreoffice-writer-nogui, libreoffice-impress-nogui and libreoffice-calc-nogui, "
        u"and build it again");
  const std::string path = folder + *place;
  void* const engine = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!engine)
    throw_not_there(identifier,
                    u"install libreoffice-writer-nogui, libreoffice-impress-nogui and libreoffice-calc-nogui (" +
                        to_utf16(::dlerror()) + u")");
  reinterpret_cast<void (*)()>(::dlsym(engine, "kavo_office_engine_begin"))();
  loaded_engine = engine;
}

}  // namespace

OfficePrograms::OfficePrograms() {
  for (const char16_t* identifier : kIdentifiers)
    register_factory(identifier, [identifier] {
      load_engine(identifier);
      return find_factory(identifier)();
    });
}

OfficePrograms::~OfficePrograms() {
  if (loaded_engine) reinterpret_cast<void (*)()>(::dlsym(loaded_engine, "kavo_office_engine_end"))();
}

}  // namespace kavo
