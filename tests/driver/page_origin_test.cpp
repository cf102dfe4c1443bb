// Maps places in the files made from a page to places in the page itself.
#include "driver/page_origin.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "driver/driver_fixture.h"
#include "html/scripts/clsASP2HTML.h"

namespace kavo::test {
namespace {

class PageOriginTest : public DriverFixture {
 protected:
  // The text that begins at the place of `text` in `bytes`, in the source.
  std::string at(std::string_view bytes, std::string_view text,
                 std::uint64_t (PageOrigin::*origin)(std::uint64_t) const, const PageOrigin& page_origin) {
    const std::size_t place = bytes.find(text);
    EXPECT_NE(place, std::string_view::npos) << text << " in " << bytes;
    return files.get(u"C:\\WORK\\a.asp").substr((page_origin.*origin)(place), text.size());
  }
};

TEST_F(PageOriginTest, AfterScriptsAndRepairs) {
  const std::string source = "<% a %><b>one<i>two</b>three</i><td <%b%>>four > five<script>six</script>&lt;seven";
  files.put(u"C:\\WORK\\a.asp", source);
  for (const std::size_t size : {7, 64, 4096}) {
    const BlockSizeScope scope(size);
    PreparationBatch single;
    const PreparationResult prepared = prepare_document({u"C:\\WORK\\a.asp"}, single, {});
    ASSERT_EQ(prepared.result, 0);
    const std::string page = files.get(u"C:\\WORK\\a_asp.htm");
    ASSERT_NE(page.find("&gt;"), std::string::npos) << page;
    for (const std::string text : {"one", "two", "three", "<td ", "four ", " five", "&lt;seven"})
      EXPECT_EQ(at(page, text, &PageOrigin::of_page, prepared.origin), text) << size;
    const std::string script = files.get(u"C:\\WORK\\a_asp.scr");
    for (const std::string text : {"<% a %>", "%b%", "six</script>"})
      EXPECT_EQ(at(script, text, &PageOrigin::of_script, prepared.origin), text) << size;

    clsASP2HTML scripts;
    scripts.HTMFile(u"C:\\WORK\\a_asp.htm");
    scripts.ASPFile(u"C:\\WORK\\restored.asp");
    ASSERT_EQ(scripts.HTML2ASP(), 0);
    const std::string restored = files.get(u"C:\\WORK\\restored.asp");
    for (const std::string text : {"<% a %>", "one", "three", "%b%", "four ", " five", "six", "seven"})
      EXPECT_EQ(at(restored, text, &PageOrigin::of_restored_page, prepared.origin), text) << size;
  }
}

}  // namespace
}  // namespace kavo::test
