// Finds out what a resource script contains. That takes a first reading, because a later block may decide what is done
// with earlier ones.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "suite/filters/rc/rc_script.h"

namespace kavo::rc {

class RcSurvey {
 public:
  explicit RcSurvey(RcScript& script);

  // Chooses what is translated: texts in `source` (or, if there are none, in the variant of another region) and texts
  // before any LANGUAGE statement. If there are none of these either, texts in the neutral language. Throws `failure` 5
  // when all texts are in other languages.
  void choose(LanguageId source, const std::string& source_name);
  bool is_chosen(const RcLanguage& language) const;

  // The line of the first resource in a language; 0 when there is none.
  std::int64_t line_of(LanguageId language) const;
  // The declared code page of the first text that is translated, 0 for none.
  unsigned declared_code_page() const { return declared_code_page_; }
  bool has_cr_lf() const { return has_cr_lf_; }
  // A message for people that names the resources of other types and the texts in other languages; "" when there are
  // none.
  std::string left_alone() const;

 private:
  struct Block {
    RcLanguage language;
    std::uint64_t texts = 0;
    std::int64_t line = 0;       // of its first resource
    std::int64_t text_line = 0;  // of its first text
    unsigned code_page = 0;      // declared for its first text
  };
  Block& block_of(const RcLanguage& language);
  void see(const RcStatement& statement);

  std::vector<Block> blocks_;  // in the order of the script
  std::map<std::string, std::uint64_t> other_types_;
  std::uint32_t last_resource_ = 0;
  std::int64_t line_ = 1;
  bool has_cr_lf_ = false;
  std::vector<RcLanguage> chosen_;
  unsigned declared_code_page_ = 0;
};

}  // namespace kavo::rc
