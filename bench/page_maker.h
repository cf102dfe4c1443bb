// Makes pages of any size as web applications have them: a head, then sections of headings, paragraphs, lists and
// tables. A server page also has script in all its places (blocks of code, values, attributes, script elements), about
// a quarter of its bytes; a plain page has none and is well formed.
#pragma once

#include <cstddef>
#include <iterator>
#include <random>
#include <string>

namespace kavo::bench {

enum class PageKind { kServer, kPlain };

class PageMaker {
 public:
  explicit PageMaker(PageKind kind) : server_(kind == PageKind::kServer) {}

  std::string make(std::size_t bytes) {
    text_ = server_ ? "<%@ language=\"VBScript\" %>\r\n<%\r\nOption Explicit\r\n%>\r\n" : "";
    text_ +=
        "<!DOCTYPE html>\r\n<html>\r\n<head>\r\n<meta charset=\"utf-8\">\r\n<title>Orders</title>\r\n"
        "<link rel=\"stylesheet\" href=\"/style/main.css\">\r\n</head>\r\n<body>\r\n";
    while (text_.size() < bytes) add_section();
    text_ += "</body>\r\n</html>\r\n";
    return std::move(text_);
  }

 private:
  void add_section() {
    ++section_;
    text_ += "<!-- section " + std::to_string(section_) + " -->\r\n<h2 class=\"title\">";
    add_words(4);
    text_ += "</h2>\r\n";
    for (unsigned i = 2 + below(4); i > 0; --i) add_paragraph();
    if (server_ && below(3) == 0) add_code();
    if (below(2) == 0) add_list();
    if (below(3) == 0) add_table();
    if (server_ && below(12) == 0) add_script();
  }

  void add_paragraph() {
    text_ += "<p>";
    for (unsigned i = 2 + below(5); i > 0; --i) {
      add_words(6 + below(14));
      switch (below(6)) {
        case 0:
          text_ += " <b>";
          add_words(2);
          text_ += "</b>";
          break;
        case 1:
          text_ += " <a href=\"/orders/detail.asp?id=" + value() + "\" title='Show the order'>";
          add_words(2);
          text_ += "</a>";
          break;
        case 2:
          text_ += server_ ? " <%= order.Total %>" : " 12,50 &euro;";
          break;
        case 3:
          text_ += " Tom &amp; Co.";
          break;
        case 4:
          text_ += "<br>\r\n";
          break;
        default:
          break;
      }
      text_ += i % 2 == 0 ? ",\r\n" : ". ";
    }
    text_ += "</p>\r\n";
  }

  void add_list() {
    text_ += "<ul>\r\n";
    for (unsigned i = 3 + below(5); i > 0; --i) {
      text_ += "<li>";
      add_words(5 + below(6));
      text_ += "</li>\r\n";
    }
    text_ += "</ul>\r\n";
  }

  void add_table() {
    text_ += "<table border=\"0\" cellpadding=\"2\">\r\n";
    for (unsigned row = 2 + below(6); row > 0; --row) {
      text_ += server_ && below(2) == 0 ? "<tr class=<%=RowClass(i)%>>\r\n" : "<tr class=\"even\">\r\n";
      for (int cell = 0; cell < 4; ++cell) {
        text_ += "<td align=\"right\">";
        text_ += server_ && below(2) == 0 ? "<%=rs(\"amount\")%>" : "1234";
        text_ += "</td>\r\n";
      }
      text_ += "</tr>\r\n";
    }
    text_ += "</table>\r\n";
  }

  void add_code() {
    text_ += "<%\r\n";
    for (unsigned i = 3 + below(12); i > 0; --i)
      text_ += "  If rs(\"status\") <> \"open\" And count < 10 Then Response.Write \"<b>\" & name & \"</b>\"\r\n";
    text_ += "%>\r\n";
  }

  void add_script() {
    text_ += "<script type=\"text/javascript\">\r\n";
    for (unsigned i = 4 + below(20); i > 0; --i)
      text_ += "  for (var i = 0; i < rows.length; i++) { total += rows[i].amount; show('row' + i); }\r\n";
    text_ += "</script>\r\n";
  }

  std::string value() { return server_ && below(2) == 0 ? "<%=order.Id%>" : std::to_string(below(100000)); }

  void add_words(unsigned count) {
    static constexpr const char* words[] = {"the",     "order",    "has",   "been",   "shipped", "to",      "your",
                                            "address", "please",   "check", "amount", "délai",   "préféré", "日本語",
                                            "invoice", "customer", "and",   "again",  "before",  "Friday"};
    for (unsigned i = 0; i < count; ++i) {
      if (i != 0) text_ += ' ';
      text_ += words[below(std::size(words))];
    }
  }

  unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

  bool server_;
  std::mt19937 random_{20};
  unsigned section_ = 0;
  std::string text_;
};

}  // namespace kavo::bench
