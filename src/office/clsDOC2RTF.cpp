#include "office/clsDOC2RTF.h"

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "common/same_file.h"
#include "office/existing_file.h"
#include "office/late_bound.h"
#include "platform/ports.h"

namespace kavo {
namespace {

constexpr std::u16string_view kWord = u"Word.Application";
constexpr std::int32_t kEmbeddedObjectField = 58;
constexpr std::int32_t kHyperlinkField = 88;
constexpr std::int16_t kDocumentFormat = 0;
constexpr std::int16_t kRtfFormat = 6;
constexpr std::int16_t kDoNotSaveChanges = 0;

}  // namespace

std::int32_t clsDOC2RTF::DOC2RTF() {
  if (!is_existing_file(doc_file_)) return 1;
  if (rtf_file_.empty()) rtf_file_ = rtf_name_of(doc_file_);
  if (!prepare(doc_file_, rtf_file_)) return 1;
  std::int32_t result = 1;
  const ObjectRef document = open(doc_file_);
  if (errors_.number() == 0) {
    unlink_dead_objects(document);
    errors_.clear();
    save_as(document, rtf_file_, kRtfFormat);
    if (errors_.number() == 0) result = 0;
    close(document);
  }
  quit_if_started();
  return result;
}

std::int32_t clsDOC2RTF::RTF2DOC() {
  if (!is_existing_file(rtf_file_)) return 1;
  if (doc_file_.empty()) doc_file_ = doc_name_of(rtf_file_);
  if (!prepare(rtf_file_, doc_file_)) return 1;
  std::int32_t result = 1;
  const ObjectRef document = open(rtf_file_);
  if (errors_.number() == 0) {
    update_hyperlinks(document);
    // Unlike the other direction, an error of the field pass counts here, and the document then stays open: both are
    // deliberate, for users who look at what went wrong.
    save_as(document, doc_file_, kDocumentFormat);
    if (errors_.number() == 0) {
      result = 0;
      ask_for_losses();
      close(document);
    }
  }
  quit_if_started();
  return result;
}

void clsDOC2RTF::EndBatch() {
  quit_after_each_ = true;
  if (!started_by_us_) return;
  quit();
  started_by_us_ = false;
}

bool clsDOC2RTF::prepare(const std::u16string& source, const std::u16string& target) {
  losses_.clear();
  bool is_itself = true;  // until they are known to be different files
  errors_.clear();
  errors_.run([&] { is_itself = is_same_file(source, target); });
  if (is_itself) return false;
  const clsCommon common;
  if (common.FileExists(target)) common.DeleteFile(target);
  return true;
}

// Tries a running word processor, then a new one, then whatever program the file is registered for.
ObjectRef clsDOC2RTF::open(const std::u16string& source) {
  Automation& automation = *ports().automation;
  ObjectRef document;
  errors_.clear();
  if (errors_.run([&] { word_ = automation.active_object(kWord); })) return open_in_word(source);
  errors_.clear();
  if (errors_.run([&] { word_ = automation.create(kWord); })) {
    started_by_us_ = true;
    return open_in_word(source);
  }
  errors_.clear();
  if (errors_.run([&] { document = automation.bind_to_file(source); })) {
    started_by_us_ = true;
    errors_.run([&] { word_ = as_object(get_member(document, u"application")); });
    errors_.run([&] { put_member(word_, u"Visible", true); });
  }
  return document;
}

ObjectRef clsDOC2RTF::open_in_word(const std::u16string& source) {
  ObjectRef document;
  errors_.run([&] { put_member(word_, u"Visible", true); });
  errors_.run([&] {
    // FileName, ConfirmConversions, ReadOnly, AddToRecentFiles
    document = as_object(call_member(as_object(get_member(word_, u"Documents")), u"Open",
                                     {by_reference(source), by_value(false), by_value(true), by_value(false)}));
  });
  return document;
}

std::int32_t clsDOC2RTF::field_count(const ObjectRef& document) {
  std::int32_t count = 0;
  errors_.run([&] { count = as_number(get_member(as_object(get_member(document, u"Fields")), u"Count")); });
  return count;
}

void clsDOC2RTF::unlink_dead_objects(const ObjectRef& document) {
  const auto field = [&](std::int32_t index) { return as_object(get_member(document, u"Fields", {by_value(index)})); };
  // The loop goes downwards, because unlinking takes a field out of the collection.
  for (std::int32_t i = field_count(document); i >= 1; --i) {
    bool is_object = false;
    errors_.run([&] { is_object = as_number(get_member(field(i), u"Type")) == kEmbeddedObjectField; });
    if (!is_object) continue;
    bool dead = true;
    // Negated as automation hosts negate, bit by bit: only -1 ("True") means that the update succeeded.
    errors_.run([&] { dead = ~as_number(call_member(field(i), u"Update")) != 0; });
    if (dead) errors_.run([&] { call_member(field(i), u"Unlink"); });
  }
}

void clsDOC2RTF::update_hyperlinks(const ObjectRef& document) {
  const auto field = [&](std::int32_t index) { return as_object(get_member(document, u"Fields", {by_value(index)})); };
  for (std::int32_t i = field_count(document); i >= 1; --i) {
    bool is_hyperlink = false;
    errors_.run([&] { is_hyperlink = as_number(get_member(field(i), u"Type")) == kHyperlinkField; });
    if (is_hyperlink) errors_.run([&] { call_member(field(i), u"Update"); });
  }
}

void clsDOC2RTF::save_as(const ObjectRef& document, const std::u16string& target, std::int16_t format) {
  errors_.run([&] { call_member(document, u"SaveAs", {by_reference(target), by_value(format)}); });
}

void clsDOC2RTF::ask_for_losses() {
  if (word_ && word_->has_member(kLossesMember))
    errors_.run([&] { losses_ = as_text(get_member(word_, kLossesMember)); });
}

void clsDOC2RTF::close(const ObjectRef& document) {
  errors_.run([&] { call_member(document, u"Close", {by_value(kDoNotSaveChanges)}); });
}

// started_by_us_ deliberately stays set after the quit: hosts rely on a later conversion quitting a word processor that
// it found running, too.
void clsDOC2RTF::quit_if_started() {
  if (started_by_us_ && quit_after_each_) quit();
}

void clsDOC2RTF::quit() {
  errors_.run([&] { call_member(word_, u"Quit", {by_value(kDoNotSaveChanges)}); });
}

}  // namespace kavo
