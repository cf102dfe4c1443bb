// kavo html ...: the converters of HTML and server pages, each alone.
#include "cli/report.h"
#include "cli/verb.h"
#include "common/document_kind.h"
#include "driver/document_files.h"
#include "html/repair/clsHTMLValidate.h"
#include "html/scripts/clsASP2HTML.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "workflow/page_guard.h"

namespace kavo {
namespace {

class Protect final : public Verb {
 public:
  std::u16string workplace(const std::u16string& file) const override { return file; }
  void add_options(CLI::App& app) override {
    app.add_flag("--overwrite", overwrite_,
                 "Replace a page and a script file that were not made from the page as it is now");
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    refuse_twin(file);
    if (!overwrite_) refuse_work_beside_page(file);
    clsASP2HTML scripts;
    scripts.Progress(progress);
    scripts.ASPFile(file);
    Outcome outcome;
    outcome.result = scripts.ASP2HTML();
    outcome.messages = without_heading(scripts.ErrorList());
    if (outcome.result != 0)
      outcome.ending = Outcome::kFailed;
    else
      outcome.produced = {{scripts.HTMFile(), kHtmlPage}, {scripts.SCRFile(), kPlainText}};
    return outcome;
  }

 private:
  bool overwrite_ = false;
};

class Restore final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("-o,--output", output_,
                   "The page to write (default: named after FILE, index_asp.htm gives index.asp)")
        ->type_name("FILE");
    app.add_flag("--force", force_, "Write the page even if scripts or their placeholders are missing");
  }
  void check_usage(std::size_t file_count) override {
    if (!output_.empty() && file_count > 1) throw CLI::ValidationError("--output", "goes with one FILE only");
  }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    clsASP2HTML scripts;
    scripts.Progress(progress);
    scripts.refuse_gaps(!force_);
    scripts.HTMFile(file);
    scripts.ASPFile(path_from_host(output_));
    Outcome outcome;
    outcome.result = scripts.HTML2ASP();
    outcome.messages = without_heading(scripts.ErrorList());
    if (outcome.result == 0) {
      outcome.messages.insert(outcome.messages.end(), scripts.warnings().begin(), scripts.warnings().end());
      outcome.produced = {{scripts.ASPFile(), kind_of_document(scripts.ASPFile()).type}};
      return outcome;
    }
    outcome.ending = Outcome::kFailed;
    if (!scripts.warnings().empty())
      outcome.messages.back().text += u". Nothing is written; --force writes the page all the same";
    return outcome;
  }

 private:
  std::string output_;
  bool force_ = false;
};

class Validate final : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_flag("--backup", backup_, "Keep the old page as FILE.bak, or as FILE.bak2 if that exists");
    app.add_flag("--check", check_, "Change nothing; exit with 3 when the page would be changed");
  }
  std::u16string workplace(const std::u16string& file) const override { return check_ ? u"" : file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    clsHTMLValidate validation;
    validation.Progress(progress);
    validation.Filename(file);
    validation.Backup(backup_);
    validation.check_only(check_);
    Outcome outcome;
    const std::u16string next_backup = backup_ && !check_ ? name_beside_backup(file) : std::u16string();
    outcome.result = next_backup.empty() ? validation.HTMLValidate() : validate_again(validation, next_backup);
    outcome.messages = without_heading(validation.ErrorList());
    if (!next_backup.empty() && outcome.result == 0 && validation.repairs() != 0)
      outcome.messages.push_back(
          {u"A backup exists already; the old page is in " + to_utf16(path_to_host(next_backup))});
    add_repairs(outcome.details, sorted_page_messages(outcome.messages).repairs, path_to_host(file));
    if (outcome.result != 0)
      outcome.ending = Outcome::kFailed;
    else if (check_ && validation.repairs() != 0)
      outcome.ending = Outcome::kDifference;
    else
      outcome.produced = {{file, kHtmlPage}};
    return outcome;
  }

 private:
  // A new name for a backup, because the existing one may be the only original. "" when there is no backup yet.
  static std::u16string name_beside_backup(const std::u16string& file) {
    const std::u16string first = file + u".bak";
    std::u16string name = first;
    for (int number = 2; ports().files->info(name); ++number) name = formatted(u"{}{}", first, number);
    return name == first ? std::u16string() : name;
  }
  // Another backup is made only if the page is changed.
  static std::int32_t validate_again(clsHTMLValidate& validation, const std::u16string& backup) {
    validation.check_only(true);
    const std::int32_t result = validation.HTMLValidate();
    if (result != 0 || validation.repairs() == 0) return result;
    validation.check_only(false);
    validation.backup_name(backup);
    return validation.HTMLValidate();
  }

  bool backup_ = false;
  bool check_ = false;
};

constexpr VerbEntry kVerbs[] = {
    {"html", "protect", "Move the scripts of server pages into a side file", "kavo html protect shop.php",
     make_verb<Protect>},
    {"html", "restore", "Put the scripts back into protected pages", "kavo html restore shop_php.htm --output shop.php",
     make_verb<Restore>},
    {"html", "validate", "Check pages and repair their tags in place", "kavo html validate --backup index.htm",
     make_verb<Validate>},
};

}  // namespace

std::span<const VerbEntry> html_verbs() { return kVerbs; }

}  // namespace kavo
