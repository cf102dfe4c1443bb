#include "office/office_converter.h"

#include <exception>

#include "common/document_names.h"
#include "common/file_type.h"
#include "office/existing_file.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// Does one conversion with an object that is kept for the next one, unless it fails or is interrupted.
template <class Converter, class Step>
void convert(std::unique_ptr<Converter>& kept, const std::u16string& form, std::u16string_view program, Step&& step) {
  std::unique_ptr<Converter> converter = kept ? std::move(kept) : std::make_unique<Converter>();
  const bool is_done = step(*converter) == 0 && is_existing_file(form);
  if (!is_done) throw failure(FailureNumber::kInvalidCall, reason_of_failure(converter->errors(), program));
  kept = std::move(converter);
}

}  // namespace

std::u16string reason_of_failure(const error_state& errors, std::u16string_view program) {
  try {
    ports().automation->create(program);
  } catch (const failure& reason) {
    return reason.description();
  }
  if (errors.number() != 0) return errors.first_description();
  return std::u16string(program) + u" refused the file";
}

OfficeConverter::WordBatch::~WordBatch() {
  try {
    EndBatch();
  } catch (const std::exception&) {
    // The program stays open; a destructor cannot report it.
  }
}

void OfficeConverter::write_form(const std::u16string& copy) {
  const std::u16string form = translated_form_of(copy);
  switch (FileTypeOf(copy)) {
    case kWordDocument:
      return convert(word_, form, kWordProgram, [&](clsDOC2RTF& program) {
        program.DOCFile(copy);
        program.RTFFile(form);
        return program.DOC2RTF();
      });
    case kPresentation:
      return convert(presentations_, form, kPresentationProgram, [&](clsPPTUtil& program) {
        program.PPTFile(copy);
        return program.PPT2XML();
      });
    case kWorkbook:
      return convert(workbooks_, form, kWorkbookProgram, [&](clsXLSUtil& program) {
        program.XLSFile(copy);
        return program.XLS2XML();
      });
    default:
      throw failure(FailureNumber::kInvalidCall, copy + u" is not an Office document");
  }
}

std::unique_ptr<OfficeInterchange> make_office_converter() { return std::make_unique<OfficeConverter>(); }

}  // namespace kavo
