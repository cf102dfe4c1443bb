// kavo import: the translations that an editor handed back.
#include <map>

#include "cli/verb.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/bilingual_document.h"

namespace kavo {
namespace {

// Takes translations over from what an editor handed back.
class Import final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--to", to_, "The bilingual document that takes the translations")->required()->type_name("TUD");
  }
  void start() override {
    document_.emplace(path_from_host(to_));
    for (std::size_t i = 0; i < document_->size(); ++i) by_number_.emplace(document_->segment(i).number, i);
  }
  std::u16string workplace(const std::u16string& file) const override {
    return file.empty() ? u"" : path_from_host(to_);
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    ProgressEvent event;
    event.handler(progress);
    const BilingualDocument given(file, &event);
    Outcome outcome;
    std::uint64_t taken = 0, refused = 0;
    for (std::size_t i = 0; i < given.size(); ++i) {
      const BilingualSegment segment = given.segment(i);
      const std::string reason = take(segment, taken);
      if (reason.empty()) continue;
      ++refused;
      outcome.messages.push_back({to_utf16("unit " + std::to_string(i + 1) + ": " + reason)});
    }
    document_->save();
    outcome.details["taken"] = taken;
    outcome.details["refused"] = refused;
    outcome.lines.push_back(std::to_string(taken) + " translations taken over, " + std::to_string(refused) +
                            " refused");
    if (refused != 0) outcome.ending = Outcome::kDifference;
    outcome.produced.push_back({document_->path(), kBilingualDocument});
    return outcome;
  }

 private:
  // "" when the translation was taken or there is nothing new in it, else why it was not.
  std::string take(const BilingualSegment& given, std::uint64_t& taken) {
    const auto found = by_number_.find(given.number);
    if (found == by_number_.end()) return "the document has no such unit";
    const BilingualSegment own = document_->segment(found->second);
    if (own.source != given.source) return "its source text is another one";
    if (own.target == given.target && own.status == given.status) return {};
    try {
      document_->set_segment(found->second, given.target, given.status, given.match);
    } catch (const failure& reason) {
      return reason.what();
    }
    ++taken;
    return {};
  }

  std::string to_;
  std::optional<BilingualDocument> document_;
  std::map<std::uint32_t, std::size_t> by_number_;
};

constexpr VerbEntry kVerbs[] = {
    {"", "import", "Take translations over from what an editor handed back",
     "kavo import index.fr.xlf --to index_asp_HTM_FR.tud", make_verb<Import>},
};

}  // namespace

std::span<const VerbEntry> import_verbs() { return kVerbs; }

}  // namespace kavo
