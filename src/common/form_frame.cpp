#include "common/form_frame.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kavo {
namespace {

// Forms belong to the thread that shows them.
thread_local std::vector<const FormFrame*> loaded_forms;

}  // namespace

FormFrame::FormFrame(std::u16string name) : name_(std::move(name)) { loaded_forms.push_back(this); }

FormFrame::~FormFrame() { std::erase(loaded_forms, this); }

bool FormFrame::is_loaded(std::u16string_view name) {
  return std::ranges::any_of(loaded_forms, [&](const FormFrame* form) { return form->name() == name; });
}

}  // namespace kavo
