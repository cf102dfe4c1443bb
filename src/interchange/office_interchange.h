// Port: Office documents in the form in which they are translated, RTF for a Word document and XML for a presentation
// or workbook (common/file_type.h).
//
// Only an Office program can write that form. The library asks for it, and so do the suite's filters when a host hands
// them the document itself. The program that contains them decides who provides it.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace kavo {

class OfficeInterchange {
 public:
  virtual ~OfficeInterchange() = default;
  // Writes the translated form of a document beside it, under the name that translated_form_of() returns, and replaces
  // an older one. `copy` is a real file that the Office program may change, because some programs save a document when
  // they open it. Throws `failure` with the program's reason, and `interruption` when the user interrupts.
  virtual void write_form(const std::u16string& copy) = 0;
};

using InterchangeFactory = std::function<std::unique_ptr<OfficeInterchange>()>;

// Sets how the process makes its interchange. Each thread makes one when it first needs it. An empty factory removes
// it.
void bring_office_interchange(InterchangeFactory factory);
bool has_office_interchange();

// The calling thread's interchange. Throws `failure` 429 when the process has none.
OfficeInterchange& office_interchange();
// Ends the thread's interchange, with the Office programs that it has started. The next use makes another.
void release_office_interchange() noexcept;

}  // namespace kavo
