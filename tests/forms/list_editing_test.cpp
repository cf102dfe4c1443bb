#include "forms/list_editing.h"

#include <gtest/gtest.h>

#include "forms/fake_presenter.h"

namespace kavo::test {
namespace {

class ListEditingTest : public testing::Test {
 protected:
  ListEditingTest() { form.view(&view); }
  ~ListEditingTest() override { form.view(nullptr); }
  Form form{u"form"};
  ListBox list{form, u"lst", {}};
  TextBox box{form, u"txt", {}};
  RecordingView view;
};

TEST_F(ListEditingTest, ANewNameIsAddedAndTheBoxIsReadyForTheNext) {
  box.Text(u"Index");
  EXPECT_TRUE(add_typed_name(list, u"Index", box));
  EXPECT_EQ(list.List(0), u"Index");
  EXPECT_EQ(box.Text(), u"");
  EXPECT_EQ(view.focused, (std::vector<const Control*>{&box}));
}

TEST_F(ListEditingTest, AListedNameStaysInTheBoxSelected) {
  list.AddItem(u"Index");
  box.Text(u"Index ");
  EXPECT_FALSE(add_typed_name(list, u"Index", box));
  EXPECT_EQ(list.ListCount(), 1);
  EXPECT_EQ(box.Text(), u"Index ");
  EXPECT_EQ(view.selections, (std::vector<RecordingView::Selection>{{&box, 0, 6}}));
}

TEST_F(ListEditingTest, NothingTypedAddsNothing) {
  EXPECT_FALSE(add_typed_name(list, u"", box));
  EXPECT_EQ(list.ListCount(), 0);
}

TEST_F(ListEditingTest, AfterRemovingTheNeighbourIsSelected) {
  for (const auto* text : {u"a", u"b", u"c"}) list.AddItem(text);
  remove_selected(list);
  EXPECT_EQ(list.ListCount(), 3) << "nothing was selected";
  list.ListIndex(1);
  remove_selected(list);
  EXPECT_EQ(list.Text(), u"c") << "the one at the same place";
  remove_selected(list);
  EXPECT_EQ(list.Text(), u"a") << "the last one's left neighbour";
  remove_selected(list);
  EXPECT_EQ(list.ListCount(), 0);
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST(TypedName, LosesBlanksAroundItAndSeparators) {
  EXPECT_EQ(typed_name(u"  a b  ", u"\t"), u"a b");
  EXPECT_EQ(typed_name(u"\t a\tb \t", u"\t"), u"ab");
  EXPECT_EQ(typed_name(u" \t ", u"\t"), u"");
  EXPECT_EQ(typed_name(u"", u",|"), u"");
  EXPECT_EQ(typed_name(u"A|1,B", u",|"), u"A1B");
}

}  // namespace
}  // namespace kavo::test
