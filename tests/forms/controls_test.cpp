#include "forms/controls.h"

#include <gtest/gtest.h>

#include "forms/form.h"

namespace kavo::test {
namespace {

class ControlsTest : public testing::Test {
 protected:
  Form form{u"form"};
  int events = 0;
  std::function<void()> count = [this] { ++events; };
};

TEST_F(ControlsTest, AButtonThatIsDisabledOrHiddenCannotBePressed) {
  Button button(form, u"cmd", {});
  button.on_click = count;
  button.Click();
  button.Enabled(false);
  button.Click();
  button.Enabled(true);
  button.Visible(false);
  button.Click();
  EXPECT_EQ(events, 1);
}

TEST_F(ControlsTest, ATextRaisesItsEventWhenItChanges) {
  TextBox box(form, u"txt", {});
  box.on_change = count;
  box.Text(u"a");
  box.Text(u"a");
  box.Text(u"");
  EXPECT_EQ(events, 2);
  EXPECT_EQ(box.text_length(), 0);
}

TEST_F(ControlsTest, OfAGroupOneOptionAtMostIsSelected) {
  Frame left(form, u"left", {}), right(form, u"right", {});
  OptionButton a(form, u"a", {}, left), b(form, u"b", {}, left), c(form, u"c", {}, right);
  b.on_click = count;
  a.Value(true);
  c.Value(true);
  b.Value(true);
  b.Value(true);
  EXPECT_FALSE(a.Value());
  EXPECT_TRUE(b.Value());
  EXPECT_TRUE(c.Value()) << "another group";
  EXPECT_EQ(events, 1);
}

TEST_F(ControlsTest, SelectingAnItemRaisesItsEvent) {
  ListBox list(form, u"lst", {});
  list.on_click = count;
  list.AddItem(u"one", 10);
  list.AddItem(u"two", 20);
  EXPECT_EQ(list.ListIndex(), -1);
  list.ListIndex(1);
  list.ListIndex(1);
  EXPECT_EQ(events, 1);
  EXPECT_EQ(list.Text(), u"two");
  list.ListIndex(7);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(events, 1) << "nothing is selected: no item was";
  for (const std::int32_t outside : {-1, 2, INT32_MAX}) {
    EXPECT_EQ(list.List(outside), u"");
    EXPECT_EQ(list.ItemData(outside), 0);
    list.ItemData(outside, 1);
    list.RemoveItem(outside);
  }
  EXPECT_EQ(list.ListCount(), 2);
}

TEST_F(ControlsTest, RemovingItemsKeepsTheSelectionOnItsItem) {
  ListBox list(form, u"lst", {});
  for (const auto* text : {u"a", u"b", u"c"}) list.AddItem(text);
  list.ListIndex(1);
  list.on_click = count;
  list.RemoveItem(0);
  EXPECT_EQ(list.Text(), u"b");
  list.RemoveItem(1);
  EXPECT_EQ(list.Text(), u"b");
  list.RemoveItem(0);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(events, 0);
}

TEST_F(ControlsTest, AControlLeavesItsFormWhenItGoes) {
  {
    Label label(form, u"lbl", {});
    EXPECT_EQ(form.controls().size(), 1u);
  }
  EXPECT_TRUE(form.controls().empty());
}

}  // namespace
}  // namespace kavo::test
