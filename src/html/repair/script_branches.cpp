#include "html/repair/script_branches.h"

#include <algorithm>

#include "formats/script/control_flow.h"

namespace kavo {
namespace {

// Deeper constructs count as one.
constexpr std::size_t kDeepest = 10'000;

}  // namespace

void ScriptBranches::placeholder(std::string_view marker, std::uint64_t position) {
  const std::uint64_t number = html::placeholder_number(marker);
  if (is_lost_ || number == 0) return;
  if (!has_begun_) next_ = scripts_.next();
  has_begun_ = true;
  const Branch before = current();
  while (next_ != 0 && next_ <= number) {
    const bool is_expected = next_ == number;
    block_.clear();
    next_ = scripts_.next(&block_);
    pass(html::text_of_block(block_));
    if (is_expected) break;
  }
  is_lost_ = next_ != 0 && next_ <= number;
  if (is_lost_) open_.assign(1, ++last_);
  if (current() != before) changes_.push_back({position, current()});
}

void ScriptBranches::pass(std::string_view block) {
  if (block.size() > html::kLongestBlock) return;
  pieces_.clear();
  languages_.add_block(block, 0, block.size(), pieces_);
  for (const script::Piece& piece : pieces_) {
    const script::Flow flow = script::flow_of(block, piece);
    open_.resize(std::max<std::size_t>(open_.size() - std::min(flow.closes, open_.size()), 1));
    if (flow.parts) open_.back() = ++last_;
    for (std::size_t i = 0; i < flow.opens && open_.size() < kDeepest; ++i) open_.push_back(++last_);
  }
}

ScriptBranches::Branch ScriptBranches::at(std::uint64_t position) const {
  const auto behind = std::ranges::upper_bound(changes_, position, {}, &Change::position);
  return behind == changes_.begin() ? 0 : (behind - 1)->branch;
}

}  // namespace kavo
