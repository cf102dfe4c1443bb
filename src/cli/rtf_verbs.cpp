// kavo rtf ...: takes pictures and embedded objects out of RTF documents and puts them back.
#include "cli/verb.h"
#include "common/file_type.h"
#include "office/clsRTFUtil.h"
#include "platform/files.h"

namespace kavo {
namespace {

class RtfVerb : public Verb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--objects", objects_, "The object file (default: named after FILE, letter.rtf has letter.obj)")
        ->type_name("NAME");
  }
  void check_usage(std::size_t file_count) override {
    if (!objects_.empty() && file_count > 1) throw CLI::ValidationError("--objects", "goes with one FILE only");
  }
  std::u16string workplace(const std::u16string& file) const override { return file; }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    clsRTFUtil rtf;
    rtf.Progress(progress);
    rtf.RTFFile(file);
    rtf.ObjFile(path_from_host(objects_));
    Outcome outcome;
    outcome.result = operate(rtf);
    outcome.messages = rtf.ErrorList();
    outcome.details["objects"] = rtf.object_count();
    if (outcome.result != 0)
      outcome.ending = Outcome::kFailed;
    else
      add_produced(rtf, outcome);
    return outcome;
  }

 private:
  virtual std::int32_t operate(clsRTFUtil& rtf) const = 0;
  virtual void add_produced(const clsRTFUtil& rtf, Outcome& outcome) const = 0;
  std::string objects_;
};

class Extract final : public RtfVerb {
  void add_options(CLI::App& app) override {
    RtfVerb::add_options(app);
    app.add_flag("--overwrite", overwrite_, "Replace an object file that was not made from this document");
  }
  std::int32_t operate(clsRTFUtil& rtf) const override {
    if (overwrite_) rtf.overwrite_object_file();
    return rtf.ExtractObjects();
  }
  void add_produced(const clsRTFUtil& rtf, Outcome& outcome) const override {
    outcome.produced = {{rtf.RTFFile(), kRtfDocument}, {rtf.ObjFile(), kUnknownFile}};
  }
  bool overwrite_ = false;
};

class Insert final : public RtfVerb {
  std::int32_t operate(clsRTFUtil& rtf) const override { return rtf.InsertObjects(); }
  void add_produced(const clsRTFUtil& rtf, Outcome& outcome) const override {
    outcome.produced = {{rtf.RTFFile(), kRtfDocument}};
  }
};

constexpr VerbEntry kVerbs[] = {
    {"rtf", "extract", "Move pictures and objects of RTF documents into an object file", "kavo rtf extract letter.rtf",
     make_verb<Extract>},
    {"rtf", "insert", "Put pictures and objects back in the place of their markers", "kavo rtf insert letter.rtf",
     make_verb<Insert>},
};

}  // namespace

std::span<const VerbEntry> rtf_verbs() { return kVerbs; }

}  // namespace kavo
