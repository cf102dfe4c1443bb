// Takes the texts out of a resource script.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "formats/rc/rc_literal.h"
#include "formats/rc/rc_texts.h"
#include "suite/filters/rc/rc_script.h"
#include "suite/filters/rc/rc_survey.h"
#include "suite/filters/rc/rc_text_place.h"

namespace kavo::rc {

class RcExtraction {
 public:
  // `replaced` is the language whose resources the translation replaces; nothing when there are none.
  RcExtraction(RcScript& script, const RcSurvey& survey, std::optional<LanguageId> replaced, ExtractionSink& sink)
      : script_(script), survey_(survey), replaced_(replaced), sink_(sink) {}

  void run(ProgressEvent& progress);

 private:
  struct Builder {
    explicit Builder(const TextCoding& bytes) : coding(bytes), segment(bytes) {}
    const TextCoding& coding;
    SegmentBuilder segment;
  };

  void take(const RcStatement& statement);
  void language(const RcStatement& statement);
  void language_values(const RcStatement& statement, std::size_t keyword);
  void code_page(const RcStatement& statement);
  void begin_resource(const RcStatement& statement);
  void header(const RcStatement& statement);
  void texts(const RcStatement& statement);
  bool segment(const RcStatement& statement, const RcText& text);
  bool run(const RcStatement& statement, const RcTextRun& run, std::string_view tail);
  void literal(const RcStatement& statement, std::string_view bytes, std::string_view tail);
  void piece(const RcPiece& piece);
  void add_plain(std::string_view bytes);

  // Writes items [from, to) unchanged.
  void items(const RcStatement& statement, std::size_t from, std::size_t to);
  void skeleton(std::string_view bytes);
  void computed(ComputedKind kind, unsigned code_page, std::string_view bytes);
  void advance(std::string_view bytes);
  Builder& builder(unsigned code_page);

  RcScript& script_;
  const RcSurvey& survey_;
  std::optional<LanguageId> replaced_;
  ExtractionSink& sink_;
  std::map<unsigned, Builder> builders_;
  Builder* builder_ = nullptr;    // of the segment that is being built
  std::string plain_;             // its text without codes
  bool is_translated_ = false;    // the current block or resource is translated
  bool has_language_ = false;     // a LANGUAGE statement of the translation is in effect
  bool has_code_page_ = false;    // a declaration of the translation's code page is in effect
  bool is_foreign_page_ = false;  // that declaration is in effect in a block that is not translated
  bool is_word_end_ = false;      // the last byte belongs to a word
  std::uint32_t last_resource_ = 0;
  std::int64_t line_ = 1;
  std::int64_t column_ = 1;
};

}  // namespace kavo::rc
