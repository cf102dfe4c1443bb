// Converts Word documents to RTF and back by driving the word processor ("Word.Application") through automation.
//
// Every step runs even if the one before it failed. The last error number counts (error_state.h). The calls, their
// order and the types of their arguments are a contract with the object model and are tested one by one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/error_state.h"
#include "platform/automation.h"

namespace kavo {

// A property that only substitutes for the word processor have: what the last SaveAs left out, as a text for people, or
// "".
inline constexpr std::u16string_view kLossesMember = u"KavoLosses";

class clsDOC2RTF {
 public:
  const std::u16string& DOCFile() const { return doc_file_; }
  void DOCFile(std::u16string_view value) { doc_file_ = value; }
  const std::u16string& RTFFile() const { return rtf_file_; }
  void RTFFile(std::u16string_view value) { rtf_file_ = value; }

  // 0, or 1 when the source is missing, the word processor cannot be reached or does not save. An empty target name is
  // derived from the source's ("report.doc" and "report_doc.rtf") and stays set. An existing target is deleted before
  // the word processor is started, so it is gone after most failures. A target that is the source itself is refused.
  std::int32_t DOC2RTF();
  std::int32_t RTF2DOC();

  // Why the last conversion returned 1, if an error was the reason.
  const error_state& errors() const { return errors_; }

  // What the document of the last successful conversion lacks, as far as the program reports it; "" when nothing.
  const std::u16string& losses() const { return losses_; }

  // Between these two calls, a word processor that a conversion started stays open for the next one.
  void StartBatch() { quit_after_each_ = false; }
  void EndBatch();

 private:
  bool prepare(const std::u16string& source, const std::u16string& target);
  ObjectRef open(const std::u16string& source);
  ObjectRef open_in_word(const std::u16string& source);
  std::int32_t field_count(const ObjectRef& document);
  void unlink_dead_objects(const ObjectRef& document);
  void update_hyperlinks(const ObjectRef& document);
  void save_as(const ObjectRef& document, const std::u16string& target, std::int16_t format);
  void ask_for_losses();
  void close(const ObjectRef& document);
  void quit_if_started();
  void quit();

  std::u16string doc_file_;
  std::u16string rtf_file_;
  ObjectRef word_;
  error_state errors_;
  std::u16string losses_;
  bool started_by_us_ = false;  // cleared by EndBatch only
  bool quit_after_each_ = true;
};

}  // namespace kavo
