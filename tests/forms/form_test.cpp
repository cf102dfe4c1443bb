#include "forms/form.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "common/clsCommon.h"
#include "forms/fake_presenter.h"
#include "forms/question_form.h"

namespace kavo::test {
namespace {

class Question final : public QuestionForm {
 public:
  Question() : QuestionForm(u"Question"), box(*this, u"box", {}), ok(*this, u"ok", {}), cancel(*this, u"cancel", {}) {
    ends_by(ok, cancel, [this] { confirmed = true; });
  }
  TextBox box;
  Button ok, cancel;
  bool confirmed = false;
};

TEST(FormTest, WithoutAPresenterAFormIsClosedAtOnce) {
  Question form;
  form.show();
  EXPECT_FALSE(form.shown());
  EXPECT_TRUE(form.Cancelled());
  EXPECT_FALSE(form.confirmed);
}

TEST(FormTest, OkConfirms) {
  FakePresenter person;
  person.next<Question>([](Question& form) { form.ok.Click(); });
  Question form;
  form.show();
  EXPECT_FALSE(form.Cancelled());
  EXPECT_TRUE(form.confirmed);
  EXPECT_TRUE(person.view.closed);
}

TEST(FormTest, CancelAndTheTitleBarCancel) {
  for (const bool by_title_bar : {false, true}) {
    FakePresenter person;
    person.next<Question>([&](Question& form) { by_title_bar ? form.close_box() : form.cancel.Click(); });
    Question form;
    form.show();
    EXPECT_TRUE(form.Cancelled());
    EXPECT_FALSE(form.shown());
  }
}

TEST(FormTest, AFormThatWasConfirmedBeforeCanBeCancelled) {
  FakePresenter person;
  person.next<Question>([](Question& form) { form.ok.Click(); });
  person.next<Question>([](Question& form) { form.cancel.Click(); });
  Question form;
  form.show();
  form.show();
  EXPECT_TRUE(form.Cancelled());
}

TEST(FormTest, TheTitleBarHidesEvenWhenCancelCannotBePressed) {
  FakePresenter person;
  Question form;
  form.cancel.Enabled(false);
  form.show();
  EXPECT_FALSE(form.shown());
}

TEST(FormTest, WhatAHandlerThrowsComesOutAndLeavesAHiddenForm) {
  FakePresenter person;
  person.next<Question>([](Question& form) { form.box.Text(u"x"); });
  Question form;
  form.box.on_change = [] { throw std::runtime_error("broken"); };
  EXPECT_THROW(form.show(), std::runtime_error);
  EXPECT_FALSE(form.shown());
  EXPECT_EQ(form.view(), nullptr);
}

TEST(FormTest, TheViewIsNotifiedOfChanges) {
  Question form;
  RecordingView view;
  form.view(&view);
  form.box.Text(u"x");
  form.box.Text(u"x");
  form.ok.Enabled(false);
  form.Caption(u"new");
  form.size(dialog_units(0, 0, 10, 10));
  form.box.SetFocus();
  form.view(nullptr);
  EXPECT_EQ(view.changed, (std::vector<const Control*>{&form.box, &form.ok}));
  EXPECT_EQ(view.form_changes, 2);
  EXPECT_EQ(view.focused, (std::vector<const Control*>{&form.box}));
}

TEST(FormTest, CentreFormAndHighLightReachTheView) {
  Question form;
  RecordingView view;
  form.view(&view);
  form.box.Text(u"seven..");
  clsCommon().CentreForm(form);
  clsCommon().HighLight(form.box);
  form.view(nullptr);
  EXPECT_EQ(view.moved, (std::pair<std::int32_t, std::int32_t>{860, 490}));
  EXPECT_EQ(view.selections, (std::vector<RecordingView::Selection>{{&form.box, 0, 7}}));
}

TEST(FormTest, TabOrderPutsTheNamedControlsFirst) {
  Question form;
  form.tab_order({&form.cancel, &form.box});
  EXPECT_EQ(form.controls(), (std::vector<Control*>{&form.cancel, &form.box, &form.ok}));
  EXPECT_EQ(form.find_control(u"ok"), &form.ok);
  EXPECT_EQ(form.find_control(u"OK"), nullptr);
}

TEST(FormTest, AFormBesideARunNeedsAPresenterThatHasSuch) {
  Question form;
  form.show_beside();
  EXPECT_FALSE(form.shown());
  FakePresenter person;
  form.show_beside();
  EXPECT_FALSE(form.shown());
  person.on_open = [](Form&) {};
  form.show_beside();
  EXPECT_TRUE(form.shown());
  form.hide();
  EXPECT_FALSE(form.shown());
}

}  // namespace
}  // namespace kavo::test
