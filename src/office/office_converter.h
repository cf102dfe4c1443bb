// The interchange that Office programs serve: Word for documents, PowerPoint and Excel for presentations and workbooks.
//
// A program stays open from its first document to the end of the converter. After a failure it is abandoned, because it
// may hang or be gone, and the next document gets another.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "interchange/office_interchange.h"
#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"

namespace kavo {

class OfficeConverter final : public OfficeInterchange {
 public:
  void write_form(const std::u16string& copy) override;

 private:
  // Quits a word processor that it has started only at its end.
  class WordBatch : public clsDOC2RTF {
   public:
    WordBatch() { StartBatch(); }
    ~WordBatch();
  };

  std::unique_ptr<WordBatch> word_;
  std::unique_ptr<clsPPTUtil> presentations_;
  std::unique_ptr<clsXLSUtil> workbooks_;
};

std::unique_ptr<OfficeInterchange> make_office_converter();

// Why a conversion failed, as far as that is known: the classes return 0 or 1 and keep the errors of their calls. If
// the program cannot be started, the reason says what to install.
std::u16string reason_of_failure(const error_state& errors, std::u16string_view program);

inline constexpr std::u16string_view kWordProgram = u"Word.Application";
inline constexpr std::u16string_view kPresentationProgram = u"PowerPoint.Application";
inline constexpr std::u16string_view kWorkbookProgram = u"Excel.Application";

}  // namespace kavo
