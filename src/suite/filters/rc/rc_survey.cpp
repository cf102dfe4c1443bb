#include "suite/filters/rc/rc_survey.h"

#include <algorithm>

#include "formats/rc/rc_texts.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/rc/rc_text_place.h"

namespace kavo::rc {
namespace {

// How many blocks a report names at most. A script may hold any number.
constexpr std::size_t kMostBlocks = 256;
constexpr std::size_t kMostTypes = 32;

}  // namespace

RcSurvey::RcSurvey(RcScript& script) {
  script.read([this](const RcStatement& statement) { see(statement); }, nullptr);
}

RcSurvey::Block& RcSurvey::block_of(const RcLanguage& language) {
  RcLanguage usual = language;
  if (usual.id) usual.id = with_usual_region(*usual.id);
  const auto found = std::ranges::find(blocks_, usual, &Block::language);
  if (found != blocks_.end()) return *found;
  if (blocks_.size() < kMostBlocks) blocks_.push_back({usual});
  return blocks_.back();
}

void RcSurvey::see(const RcStatement& statement) {
  if (statement.resource && statement.resource->number != last_resource_) {
    last_resource_ = statement.resource->number;
    Block& block = block_of(statement.language);
    if (block.line == 0) block.line = line_;
    const std::string& type = statement.resource->type_name;
    if (statement.resource->type == RcType::kOther && (other_types_.size() < kMostTypes || other_types_.contains(type)))
      ++other_types_[type];
  }
  if (const std::size_t texts = texts_of(statement).size(); texts != 0) {
    Block& block = block_of(statement.language);
    if (block.texts == 0) {
      block.text_line = line_;
      block.code_page = statement.code_page;
    }
    block.texts += texts;
  }
  line_ += std::ranges::count(statement.bytes, '\n');
  has_cr_lf_ = has_cr_lf_ || statement.bytes.find("\r\n") != std::string::npos;
}

void RcSurvey::choose(LanguageId source, const std::string& source_name) {
  const auto first_with = [&](auto&& fits) -> const Block* {
    const auto found = std::ranges::find_if(blocks_, [&](const Block& b) { return b.texts != 0 && fits(b.language); });
    return found == blocks_.end() ? nullptr : &*found;
  };
  const auto take = [&](const Block* block) {
    if (!block) return;
    if (chosen_.empty()) declared_code_page_ = block->code_page;
    chosen_.push_back(block->language);
  };
  const Block* same = first_with([&](const RcLanguage& l) { return l.id == source; });
  if (!same) same = first_with([&](const RcLanguage& l) { return l.id && primary_of(*l.id) == primary_of(source); });
  take(same);
  take(first_with([](const RcLanguage& l) { return !l.is_stated; }));
  if (chosen_.empty()) take(first_with([](const RcLanguage& l) { return l.id && primary_of(*l.id) == 0; }));
  if (!chosen_.empty()) return;
  const Block* const other = first_with([](const RcLanguage&) { return true; });
  if (!other) return;
  throw failure(FailureNumber::kInvalidCall,
                to_utf16("the script has no texts in " + source_name + "; from line " +
                         std::to_string(other->text_line) + " on it has texts in " + language_text(other->language.id) +
                         ". Name that language as the source language"));
}

bool RcSurvey::is_chosen(const RcLanguage& language) const {
  RcLanguage usual = language;
  if (usual.id) usual.id = with_usual_region(*usual.id);
  return std::ranges::find(chosen_, usual) != chosen_.end();
}

std::int64_t RcSurvey::line_of(LanguageId language) const {
  const auto found = std::ranges::find_if(blocks_, [&](const Block& block) { return block.language.id == language; });
  return found == blocks_.end() ? 0 : found->line;
}

std::string RcSurvey::left_alone() const {
  std::string list;
  const auto add = [&](std::uint64_t count, const std::string& what) {
    (list += list.empty() ? "" : ", ") += std::to_string(count) + " " + what;
  };
  for (const auto& [type, count] : other_types_) add(count, type);
  for (const Block& block : blocks_)
    if (block.texts != 0 && !is_chosen(block.language))
      add(block.texts, std::string(block.texts == 1 ? "text" : "texts") + " in " + language_text(block.language.id));
  return list;
}

}  // namespace kavo::rc
