// The suite on files in memory: documents in, bilingual documents out, and back.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/document_names.h"
#include "platform/failure.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/conversion.h"
#include "support/ports_fixture.h"

namespace kavo::test {

class SuiteTest : public PortsFixture {
 protected:
  static std::u16string in_folder(std::u16string_view name) { return u"C:\\work\\" + std::u16string(name); }
  void put(std::u16string_view name, std::string_view bytes) { files.put(in_folder(name), bytes); }
  std::string get(std::u16string_view name) const { return files.get(in_folder(name)); }
  bool has(std::u16string_view name) const { return files.has(in_folder(name)); }

  struct Road {
    std::u16string filter = u"K19TXT";
    unsigned source_code_page = 65001;
    unsigned target_code_page = 0;
    std::optional<SegmentColours> colours = {};
    FilterOptions options = {};
  };

  std::u16string convert(std::u16string_view name, const Road& road) {
    ConversionRequest request;
    request.document = in_folder(name);
    request.tud = tud_name_of(request.document, u"FR");
    request.source_language = u"EN-US";
    request.target_language = u"FR";
    request.source_code_page = road.source_code_page;
    request.target_code_page = road.target_code_page;
    request.filter = road.filter;
    request.options = road.options;
    ProgressEvent progress;
    convert_document(request, progress);
    return request.tud;
  }
  std::u16string convert(std::u16string_view name) { return convert(name, Road()); }

  // Builds the target of a bilingual document and returns its bytes.
  std::string rebuild(const std::u16string& tud, const Road& road) {
    const BilingualDocument document(tud);
    TargetRequest request;
    request.target = document.target_name();
    request.open_tag = in_folder(u"x.otf");
    request.skeleton = document.locate_skeleton()->path;
    document.save_open_tag(request.open_tag, road.colours);
    ProgressEvent progress;
    create_target(request, progress);
    return files.get(request.target);
  }
  std::string rebuild(const std::u16string& tud) { return rebuild(tud, Road()); }

  using Translate = std::function<std::u16string(std::u16string source)>;
  // There and back, every segment translated.
  std::string translated(std::u16string_view name, std::string_view bytes, const Translate& translate,
                         const Road& road) {
    put(name, bytes);
    const std::u16string tud = convert(name, road);
    BilingualDocument document(tud);
    for (std::size_t i = 0; i < document.size(); ++i)
      document.set_segment(i, from_host_text(translate(to_host_text(document.segment(i).source))),
                           TranslationStatus::kTranslated, 0);
    document.save();
    return rebuild(tud, road);
  }

  // What a translator sees.
  std::vector<std::u16string> sources(const std::u16string& tud) {
    const BilingualDocument document(tud);
    std::vector<std::u16string> texts;
    for (std::size_t i = 0; i < document.size(); ++i) texts.push_back(to_host_text(document.segment(i).source));
    return texts;
  }

  // The description of the failure that a step ends with, "" when it does not fail.
  template <class Step>
  static std::u16string reason_of(Step&& step) {
    try {
      step();
    } catch (const failure& reason) {
      return reason.description();
    }
    return u"";
  }
};

}  // namespace kavo::test
