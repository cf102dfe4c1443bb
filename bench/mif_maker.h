// Makes MIF files of any size as a page layout program writes a manual: catalogues, paragraphs with markers and
// overridden formats, and imported pictures as facet data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace kavo::bench {

class MifMaker {
 public:
  struct Shape {
    unsigned picture_percent = 20;     // of the bytes are facet data
    std::size_t distinct_markers = 0;  // how many index texts there are in all; 0: a new one every time
  };

  MifMaker() : MifMaker(Shape{}) {}
  explicit MifMaker(Shape shape) : shape_(shape) {}

  std::string make(std::size_t bytes) {
    text_ = "<MIFFile 7.00> # Generated for measurements\n";
    add_catalogues();
    std::size_t pictures = 0;
    text_ += "<TextFlow \n <TFTag `A'>\n <Notes \n > # end of Notes\n";
    while (text_.size() < bytes) {
      const std::size_t before = text_.size();
      if (pictures * 100 < text_.size() * shape_.picture_percent) {
        add_picture();
        pictures += text_.size() - before;
      } else {
        add_paragraph();
      }
    }
    text_ += "> # end of TextFlow\n# End of MIFFile\n";
    return std::move(text_);
  }

  // Nothing but index markers, every text a different one.
  std::string make_markers(std::size_t count) {
    text_ = "<MIFFile 7.00>\n";
    for (std::size_t i = 0; i < count; ++i) add_marker(i);
    return std::move(text_);
  }

 private:
  void line(std::string_view indent, const std::string& content) {
    text_ += indent;
    text_ += content;
    text_ += '\n';
  }

  void add_catalogues() {
    text_ += "<Units Uin>\n<CharUnits CUpt>\n<PgfCatalog \n";
    for (int i = 0; i < 60; ++i) add_format("Style " + std::to_string(i));
    text_ += "> # end of PgfCatalog\n<VariableFormats \n";
    for (int i = 0; i < 30; ++i)
      line(" ", "<VariableFormat \n  <VariableName `Variable " + std::to_string(i) +
                    "'>\n  <VariableDef `<Default \\xa6 Font\\>Text " + std::to_string(i) +
                    "'>\n > # end of VariableFormat");
    text_ += "> # end of VariableFormats\n<XRefFormats \n";
    for (int i = 0; i < 25; ++i)
      line(" ", "<XRefFormat \n  <XRefName `Format " + std::to_string(i) +
                    "'>\n  <XRefDef `see <$paratext\\> on page\\x11 <$pagenum\\>'>\n > # end of XRefFormat");
    text_ += "> # end of XRefFormats\n";
  }

  void add_format(const std::string& tag) {
    line(" ", "<Pgf \n  <PgfTag `" + tag + "'>\n  <PgfUseNextTag No>\n  <PgfNextTag `'>\n  <PgfAlignment Left>");
    for (const char* name : {"FIndent", "LIndent", "RIndent", "SpBefore", "SpAfter", "Leading"})
      line("  ", std::string("<Pgf") + name + "  " + std::to_string(random_() % 40) + ".0\">");
    line("  ",
         "<PgfNumTabs 2>\n  <TabStop \n   <TSX  0.5\">\n   <TSType Left>\n   <TSLeaderStr ` '>\n  > # end of TabStop");
    line(
        "  ",
        "<PgfFont \n   <FTag `'>\n   <FFamily `Times'>\n   <FVar `Regular'>\n   <FWeight `Bold'>\n   <FSize  12.0 pt>\n"
        "   <FUnderlining FNoUnderlining>\n   <FColor `Black'>\n  > # end of PgfFont");
    for (const char* name : {"LineSpacing Fixed", "AutoNum Yes", "NumberFont `'", "NumAtEnd No", "Hyphenate Yes",
                             "HyphenMaxLines 2", "HyphenMinPrefix 3", "HyphenMinSuffix 3", "LetterSpace No"})
      line("  ", std::string("<Pgf") + name + ">");
    line("  ", "<PgfNumFormat `" + tag.substr(0, 1) + ":<n\\>.<n+\\>\\\\t'>");
    line(" ", "> # end of Pgf");
  }

  void add_marker(std::size_t number) {
    text_ += "   <Marker \n    <MType 2>\n    <MTypeName `Index'>\n    <MText `pumps, model ";
    text_ += std::to_string(number);
    text_ += "; valves: closing[valves closing]'>\n    <MCurrPage `12'>\n    <Unique 1012345>\n   > # end of Marker\n";
  }

  void add_paragraph() {
    line(" ", "<Para \n  <Unique " + std::to_string(1'000'000 + random_() % 900'000) + ">\n  <PgfTag `Style " +
                  std::to_string(random_() % 60) + "'>");
    if (random_() % 40 == 0) add_format("Style " + std::to_string(random_() % 60));
    const unsigned lines = 1 + random_() % 6;
    for (unsigned i = 0; i < lines; ++i) {
      text_ += "  <ParaLine \n   <TextRectID 17>\n";
      if (random_() % 12 == 0) {
        const std::size_t number = markers_++;
        add_marker(shape_.distinct_markers == 0 ? number : number % shape_.distinct_markers);
      }
      if (random_() % 8 == 0) text_ += "   <Font \n    <FTag `Emphasis'>\n    <FLocked No>\n   > # end of Font\n";
      text_ += "   <String `The pump must be closed before service; see the valve (r\\x8e sum\\x8e ) on page \\>'>\n";
      if (random_() % 5 == 0) text_ += "   <Char HardReturn>\n";
      text_ += "  >\n";
    }
    text_ += " > # end of Para\n";
  }

  void add_picture() {
    line(" ",
         "<Frame \n  <ID 12>\n  <Pen 15>\n  <Fill 15>\n  <ImportObject \n   <Unique 5>\n   <ShapeRect  0.0\" 0.0\" "
         "3.0\" 2.0\">");
    text_ += "=FrameVector\n&%v\n&<MakerVector6.0>\n";
    const std::size_t rows = 100 + random_() % 4000;
    for (std::size_t row = 0; row < rows; ++row) {
      text_ += '&';
      for (int word = 0; word < 10; ++word) {
        std::uint32_t bits = static_cast<std::uint32_t>(random_());
        for (int digit = 0; digit < 8; ++digit, bits >>= 4) text_ += "0123456789ABCDEF"[bits & 15];
      }
      text_ += '\n';
    }
    text_ += "&\\x\n=EndInset\n  > # end of ImportObject\n > # end of Frame\n";
  }

  Shape shape_;
  std::mt19937 random_{20260101};
  std::string text_;
  std::size_t markers_ = 0;
};

}  // namespace kavo::bench
