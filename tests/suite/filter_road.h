// A document in memory on its whole way through a filter and back, for properties that tests and fuzzers share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/document_names.h"
#include "platform/ports.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/conversion.h"
#include "support/memory_files.h"

namespace kavo::test {

class FilterRoad {
 public:
  // `filter` is a tag, `extension` that of its documents, with the point, `language` that of their texts.
  FilterRoad(std::u16string_view filter, std::u16string_view extension, unsigned code_page,
             std::u16string_view language = u"EN-US")
      : filter_(filter),
        document_(u"C:\\work\\a" + std::u16string(extension)),
        target_(u"C:\\work\\b" + std::u16string(extension)),
        code_page_(code_page),
        language_(language) {
    ports().files = &files_;
  }

  // The texts of a document, as coded text.
  std::vector<std::string> take_apart(std::string_view bytes) {
    files_.put(document_, bytes);
    ConversionRequest request;
    request.document = document_;
    request.tud = kTud;
    request.source_language = language_;
    request.target_language = language_;
    request.source_code_page = code_page_;
    request.filter = filter_;
    ProgressEvent progress;
    convert_document(request, progress);
    const BilingualDocument document(kTud);
    header_ = document.header();
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < document.size(); ++i) texts.emplace_back(document.segment(i).source);
    return texts;
  }
  // Of the document that was taken apart last.
  const TudHeader& header() const { return header_; }

  // The document that was taken apart last, with these texts; {} for its own.
  std::string put_together(const std::vector<std::string>& texts) {
    BilingualDocument document(kTud);
    for (std::size_t i = 0; i < texts.size(); ++i) document.set_segment(i, texts[i], TranslationStatus::kTranslated, 0);
    document.save();
    TargetRequest request;
    request.target = target_;
    request.open_tag = kOpenTag;
    request.skeleton = skeleton_name_of(kTud);
    document.save_open_tag(request.open_tag);
    ProgressEvent progress;
    create_target(request, progress);
    return files_.get(target_);
  }

 private:
  static constexpr const char16_t* kTud = u"C:\\work\\a.tud";
  static constexpr const char16_t* kOpenTag = u"C:\\work\\a.otf";

  PortsScope scope_;
  MemoryFiles files_;
  std::u16string filter_;
  std::u16string document_;
  std::u16string target_;
  unsigned code_page_;
  std::u16string language_;
  TudHeader header_;
};

// "" when the texts that came back are those that were wanted; else what is broken.
inline std::string broken_texts(const std::vector<std::string>& wanted, const std::vector<std::string>& found) {
  for (std::size_t i = 0; i < wanted.size() && i < found.size(); ++i)
    if (found[i] != wanted[i])
      return "text " + std::to_string(i + 1) + " is \"" + found[i] + "\" instead of \"" + wanted[i] + "\"";
  if (found.size() == wanted.size()) return {};
  return std::to_string(found.size()) + " texts instead of " + std::to_string(wanted.size());
}

}  // namespace kavo::test
