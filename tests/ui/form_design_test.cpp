// What holds for every form: unique access keys, nothing outside the form, nothing over anything else, a name for
// every box, buttons of the usual size.
#include <gtest/gtest.h>

#include <set>

#include "html/frmHTMLOptions.h"
#include "mif/frmMIFOptions.h"
#include "office/frmExcelOptions.h"
#include "platform/unicode.h"
#include "ui/frmProgress.h"
#include "ui/frmSetLanguage.h"
#include "ui/wizard_fixture.h"

namespace kavo::test {
namespace {

char16_t access_key(const Control& control) {
  const std::u16string& caption = control.Caption();
  for (std::size_t i = 0; i + 1 < caption.size(); ++i)
    if (caption[i] == u'&' && caption[++i] != u'&') return caption[i] >= u'a' ? caption[i] - 0x20 : caption[i];
  return 0;
}

bool overlap(const Place& a, const Place& b) {
  return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

bool inside(const Place& inner, const Place& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right() <= outer.right() &&
         inner.bottom() <= outer.bottom();
}

class FormDesignTest : public WizardFixture {
 protected:
  static void check(const Form& form) {
    SCOPED_TRACE(to_utf8(form.name()));
    const std::int32_t margin = 7 * kUnitsPerDialogUnit;
    const Place inner{margin, margin, form.size().width - 2 * margin, form.size().height - 2 * margin};
    std::set<char16_t> keys;
    std::set<std::u16string> names;
    std::vector<const Control*> visible;
    for (std::size_t i = 0; i < form.controls().size(); ++i) {
      const Control& control = *form.controls()[i];
      SCOPED_TRACE(to_utf8(control.name()));
      EXPECT_TRUE(names.insert(control.name()).second);
      if (!control.Visible()) continue;
      const char16_t key = access_key(control);
      EXPECT_TRUE(key == 0 || keys.insert(key).second) << "the key is taken";
      EXPECT_TRUE(inside(control.place(), inner));
      EXPECT_TRUE(control.kind() != ControlKind::kButton || control.place().height == 14 * kUnitsPerDialogUnit);
      const bool is_box = control.kind() == ControlKind::kTextBox || control.kind() == ControlKind::kListBox ||
                          control.kind() == ControlKind::kComboBox;
      const bool has_label = i > 0 && form.controls()[i - 1]->kind() == ControlKind::kLabel;
      EXPECT_TRUE(!is_box || has_label || !control.Caption().empty()) << "a screen reader has no name for it";
      visible.push_back(&control);
    }
    for (const Control* a : visible)
      for (const Control* b : visible) {
        if (a == b || !overlap(a->place(), b->place())) continue;
        const bool framed = (a->kind() == ControlKind::kFrame && inside(b->place(), a->place())) ||
                            (b->kind() == ControlKind::kFrame && inside(a->place(), b->place()));
        EXPECT_TRUE(framed) << to_utf8(a->name()) << " over " << to_utf8(b->name());
      }
  }
};

TEST_F(FormDesignTest, OfEveryForm) {
  check(frmMIFOptions());
  check(frmHTMLOptions());
  check(frmExcelOptions());
  check(frmProgress());
  frmSetLanguage language;
  check(language);
  language.cmdToggle.Click();
  check(language);
  frmWizard wizard(services);
  wizard.cmdKAVO.Visible(true);
  check(wizard);
  automation.factories.erase(u"K19Suite.TranslationMemory");
  check(frmWizard(services));
}

TEST_F(FormDesignTest, TheProgressCancelsOnceAndTakesALateWishBack) {
  {
    frmProgress form;
    form.report(text::kPreparing, u"C:\\R&D\\page.htm", 45);
    EXPECT_EQ(form.lblFile.Caption(), u"C:\\R&&D\\page.htm");
    EXPECT_EQ(form.lblStep.Caption(), u"Preparing: 45 %");
    EXPECT_EQ(form.prgDone.Value(), 45);
    form.report(text::kConverting, u"C:\\page_htm.htm", 50);
    EXPECT_EQ(form.lblStep.Caption(), u"Converting: 50 %");
    form.cmdCancel.Click();
    form.close_box();
    EXPECT_TRUE(form.Cancelled());
    EXPECT_TRUE(interrupt_requested());
  }
  EXPECT_FALSE(interrupt_requested());
}

}  // namespace
}  // namespace kavo::test
