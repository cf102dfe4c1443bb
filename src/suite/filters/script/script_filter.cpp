#include "suite/filters/script/script_filter.h"

#include <optional>

#include "platform/formatted.h"
#include "platform/unicode.h"
#include "suite/document/tud_format.h"
#include "suite/filters/page_coding.h"
#include "suite/filters/script/script_extraction.h"
#include "suite/filters/script/script_proof.h"
#include "suite/filters/script/script_writing.h"

namespace kavo {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

class ScriptFilter final : public Filter {
 public:
  void extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
               ProgressEvent& progress) override;
  void begin_rebuild(const RebuildSettings& settings) override;
  void write_segment(const Hole& hole, std::string_view translation, std::string& bytes) override;
  void written(const WrittenPart& part) override;
  void end_rebuild() override;

 private:
  std::optional<script::ScriptProof> proof_;
};

void ScriptFilter::extract(BlockReader& document, const ConversionSettings& settings, ExtractionSink& sink,
                           ProgressEvent& progress) {
  while (document.window().size() < html::kDeclarationReach && document.more()) {
  }
  const std::string_view beginning = document.window();
  DocumentFacts facts;
  const std::string extension = extension_of_page(settings);
  const html::PageCoding page = page_coding_of(settings, beginning);
  facts.code_page = page.code_page.value_or(settings.source_code_page);
  facts.keeps_code_page = page.has_mark || page.is_unsupported || page.is_in_script;
  facts.data = std::string(kScriptFacts) + " " + extension;
  facts.datatype = kScriptDatatype;
  const std::size_t mark = beginning.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  if (mark != 0) {
    facts.code_page = kUtf8CodePage;
    facts.keeps_code_page = true;
  }
  ConversionSettings choices = settings;
  // In a coding that is not supported, nothing beyond ASCII could be read or written.
  if (page.is_unsupported) choices.scripts.offer = ScriptSettings::Offer::kNone;
  sink.begin(facts);
  sink.skeleton(beginning.substr(0, mark));
  document.consume(mark);
  const TextCoding coding(facts.code_page);
  const script::Language server = script::language_of_page(extension);
  script::ScriptBlocks blocks(document, progress);
  script::ScriptExtraction extraction(blocks, server, coding, choices, sink);
  extraction.run(progress);
  if (extraction.unknown() != 0 && choices.scripts.offer != ScriptSettings::Offer::kAll && settings.tell)
    settings.tell(
        {formatted(u"Texts of scripts in an unknown language, which are locked (--scripts all opens them): {}",
                   extraction.unknown())});
}

// Documents of the first versions do not say to which page they belong, so their scripts are not proved.
void ScriptFilter::begin_rebuild(const RebuildSettings& settings) {
  Filter::begin_rebuild(settings);
  const std::string_view data = settings.facts.data;
  proof_.reset();
  if (data.size() > kScriptFacts.size())
    proof_.emplace(script::language_of_page(data.substr(kScriptFacts.size() + 1)), source_coding(), target_coding());
}

void ScriptFilter::written(const WrittenPart& part) {
  if (proof_) proof_->add(part);
}

void ScriptFilter::end_rebuild() {
  if (proof_) proof_->finish();
}

void ScriptFilter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  script::ScriptWriting(hole, target_coding()).write(translation, bytes);
}

}  // namespace

std::unique_ptr<Filter> make_script_filter() { return std::make_unique<ScriptFilter>(); }

}  // namespace kavo
