#include "cli/verb.h"

namespace kavo {
namespace {

constexpr VerbGroup kGroups[] = {
    {"html", "Run the converters of HTML and server pages alone"},
    {"mif", "Run the converter of FrameMaker files (MIF) alone"},
    {"rtf", "Take the objects of RTF documents out and put them back"},
    {"word", "Convert Word documents through Word"},
    {"powerpoint", "Convert presentations through PowerPoint"},
    {"excel", "Convert workbooks through Excel"},
};

}  // namespace

std::span<const VerbGroup> verb_groups() { return kGroups; }

std::vector<VerbEntry> all_verbs() {
  std::vector<VerbEntry> verbs;
  for (const auto& table : {preprocess_verbs(), wizard_verbs(), prepare_verbs(), export_verbs(), import_verbs(),
                            pseudo_verbs(), stats_verbs(), edit_verbs(), rebuild_verbs(), verify_verbs(), html_verbs(),
                            mif_verbs(), rtf_verbs(), office_verbs(), init_verbs(), settings_verbs()})
    verbs.insert(verbs.end(), table.begin(), table.end());
  return verbs;
}

MessageList without_heading(const MessageList& messages) {
  return messages.empty() ? messages : MessageList(messages.begin() + 1, messages.end());
}

}  // namespace kavo
