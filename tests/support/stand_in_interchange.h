// An interchange whose documents are already in translated form: the file "report.doc" contains RTF.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/document_names.h"
#include "common/pending_file.h"
#include "interchange/office_interchange.h"

namespace kavo::test {

// Serves the process for as long as it lives.
class StandInInterchange {
 public:
  StandInInterchange() {
    bring_office_interchange([this]() -> std::unique_ptr<OfficeInterchange> {
      ++started;
      return std::make_unique<Serving>(*this);
    });
  }
  ~StandInInterchange() {
    release_office_interchange();
    bring_office_interchange({});
  }
  StandInInterchange(const StandInInterchange&) = delete;
  StandInInterchange& operator=(const StandInInterchange&) = delete;

  std::vector<std::u16string> copies;                      // that were handed over
  std::function<void(const std::u16string& copy)> before;  // may throw
  int started = 0;

 private:
  class Serving final : public OfficeInterchange {
   public:
    explicit Serving(StandInInterchange& owner) : owner_(owner) {}
    void write_form(const std::u16string& copy) override {
      owner_.copies.push_back(copy);
      if (owner_.before) owner_.before(copy);
      copy_file(copy, translated_form_of(copy));
    }

   private:
    StandInInterchange& owner_;
  };
};

}  // namespace kavo::test
