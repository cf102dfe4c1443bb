// Turns a script file into segments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter.h"
#include "suite/filters/script/author_blocks.h"
#include "suite/filters/script/script_blocks.h"
#include "suite/filters/script/script_units.h"
#include "suite/filters/script/tag_placeholders.h"

namespace kavo::script {

class ScriptExtraction {
 public:
  // `blocks` are those of the script file, in the bytes of `coding`; `server` is the language of the page's server
  // blocks until it declares another one. All must outlive the object.
  ScriptExtraction(ScriptBlocks& blocks, Language server, const TextCoding& coding, const ConversionSettings& settings,
                   ExtractionSink& sink);
  void run(ProgressEvent& progress);
  // After run(): how many texts are in doubt because their script's language is unknown.
  std::uint32_t unknown() const { return unknown_; }

 private:
  struct Nested {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::uint32_t number = 0;
  };

  using Block = ScriptBlocks::Block;
  template <class Action>
  void each_block(Action&& action);
  void enter_block(std::string_view gap, const Block& block);
  void emit(const std::vector<Unit>& units);
  void finish_unit();
  const Segment& segment_of(const Unit& unit, const std::vector<Nested>& nested);
  void add_code(const UnitPart& part, const std::vector<Nested>& nested);
  void skeleton_up_to(std::size_t place);

  ScriptBlocks& blocks_;
  std::string_view text_;  // the text of all blocks; all places are offsets in it
  const TextCoding& coding_;
  using Offer = ScriptSettings::Offer;
  Offer offer_;
  ExtractionSink& sink_;
  AuthorBlocks author_;
  TagPlaceholders tags_;
  DestinationRules rules_;
  ScriptUnits finder_;
  SegmentBuilder builder_;
  Language page_language_;

  // Nested units that are being written, the outermost first, each with the segments inside it.
  struct Open {
    const Unit* unit = nullptr;
    std::vector<Nested> nested;
  };
  std::vector<Open> open_;
  std::size_t written_ = 0;  // bytes of the text that went to the sink
  // These two describe the block whose units are being written.
  std::vector<std::size_t> lines_;  // where each of its lines begins
  std::int64_t line_ = 1;           // the number of the first line in the file
  std::int64_t author_line_ = 0;    // the same in the author's page, 0 when unknown
  std::uint32_t unknown_ = 0;
};

}  // namespace kavo::script
