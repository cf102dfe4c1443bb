#include "workflow/mif_book.h"

#include "common/path_parts.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "suite/document/pseudo_translation.h"

namespace kavo {

std::u16string MifBook::rebuild(K19FPWObj& driver, const std::u16string& document, const RunLanguages& languages) {
  if (!is_prepared_) prepare(languages);
  const auto found = bilingual_.find(document);
  if (found == bilingual_.end())
    throw failure(FailureNumber::kInvalidCall,
                  u"The document cannot be prepared together with the other MIF documents");
  return rebuild_document(driver, found->second);
}

void MifBook::prepare(const RunLanguages& languages) {
  is_prepared_ = true;
  const std::u16string folder = folder_.make("book") + u"\\";
  const auto copy_of = [&](const std::u16string& document) { return folder + file_name_of(document); };
  std::vector<std::u16string> copies;
  for (const std::u16string& document : documents_) {
    copies.push_back(copy_of(document));
    copy_file(document, copies.back());
  }
  PreparationBatch batch(copies);
  std::vector<std::u16string> translated;
  for (const std::u16string& document : documents_) {
    const ConvertedDocument converted = prepare_and_convert({copy_of(document)}, batch, languages, {});
    if (!converted.is_done()) continue;
    const std::vector<ProducedFile>& files = converted.preparation.files;
    bilingual_[document] = files.front().tud_name;
    for (const ProducedFile& file : files) translated.push_back(file.tud_name);
  }
  ProgressEvent progress;
  for (const std::u16string& bilingual : translated) pseudo_translate(bilingual, progress);
}

namespace {

// Keeps the driver's messages, which name the cause of a failure.
class Listener {
 public:
  explicit Listener(K19FPWObj& driver) : driver_(driver) {
    driver_.observe({{}, [this](const Message& message) { told_ += u": " + message.text; }});
  }
  ~Listener() { driver_.observe({}); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  const std::u16string& told() const { return told_; }

 private:
  K19FPWObj& driver_;
  std::u16string told_;
};

}  // namespace

std::u16string rebuild_document(K19FPWObj& driver, const std::u16string& bilingual_document) {
  std::u16string name = bilingual_document;
  std::u16string target;
  std::int32_t preview = 0;
  std::int32_t highlight = 0;
  const Listener listener(driver);
  if (driver.CreateTranslation(name, target, preview, highlight) != 0) {
    // The messages may begin with the error already.
    const std::u16string error = u": " + driver.LastError();
    std::u16string text = listener.told().starts_with(error) ? listener.told() : error + listener.told();
    throw failure(FailureNumber::kInvalidCall, text.erase(0, 2));
  }
  return target;
}

}  // namespace kavo
