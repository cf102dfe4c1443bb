// Acts as a person: does to each form that is shown, in order, what the test has set.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "forms/form.h"

namespace kavo::test {

// What a form told its view.
class RecordingView final : public FormView {
 public:
  std::vector<const Control*> changed;
  int form_changes = 0;
  std::vector<const Control*> focused;
  struct Selection {
    const TextBox* box;
    std::int32_t start, length;
    bool operator==(const Selection&) const = default;
  };
  std::vector<Selection> selections;
  bool closed = false;
  std::pair<std::int32_t, std::int32_t> moved{-1, -1};

  void control_changed(Control& control) override { changed.push_back(&control); }
  void form_changed() override { ++form_changes; }
  void focus(Control& control) override { focused.push_back(&control); }
  void select_text(TextBox& box, std::int32_t start, std::int32_t length) override {
    selections.push_back({&box, start, length});
  }
  void close() override { closed = true; }
  Extent extent() const override { return {200, 100}; }
  Extent screen_extent() const override { return {1920, 1080}; }
  void move(std::int32_t left, std::int32_t top) override { moved = {left, top}; }
};

// In use for as long as it lives. A form for which nothing is set, or that is still shown afterwards, is closed by its
// title bar.
class FakePresenter final : public FormPresenter {
 public:
  FakePresenter() : before_(form_presenter()) { form_presenter(this); }
  ~FakePresenter() override { form_presenter(before_); }
  FakePresenter(const FakePresenter&) = delete;
  FakePresenter& operator=(const FakePresenter&) = delete;

  std::vector<std::function<void(Form&)>> acts;
  std::vector<std::u16string> shown;  // names of the forms, in turn
  RecordingView view;                 // of the last form
  // Forms shown beside a run: null refuses them.
  std::function<void(Form&)> on_open;

  // The next form is one of this class; `act` is done to it.
  template <class Kind>
  void next(std::function<void(Kind&)> act) {
    acts.push_back([act = std::move(act)](Form& form) { act(dynamic_cast<Kind&>(form)); });
  }

  void show(Form& form) override {
    shown.push_back(form.name());
    view = {};
    form.view(&view);
    struct Unseen {
      Form& form;
      ~Unseen() { form.view(nullptr); }
    } unseen{form};
    if (!acts.empty()) {
      const auto act = std::move(acts.front());
      acts.erase(acts.begin());
      act(form);
    }
    if (form.shown()) form.close_box();
  }
  bool open(Form& form) override {
    if (!on_open) return false;
    shown.push_back(form.name());
    on_open(form);
    return true;
  }

 private:
  FormPresenter* before_;
};

}  // namespace kavo::test
