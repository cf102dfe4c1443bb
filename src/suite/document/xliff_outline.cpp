#include "suite/document/xliff_outline.h"

#include <string>

namespace kavo {
namespace {

class OutlineReader final : public XmlHandler {
 public:
  explicit OutlineReader(std::u16string_view path) : reader_(path) {}

  XliffOutline read() {
    reader_.read(*this);
    if (outline_.files.empty()) reader_.refuse(u"the document has no file element");
    return std::move(outline_);
  }

  void start(std::string_view space, std::string_view name, const XmlAttributes&, XmlPlace place) override {
    ++depth_;
    if (depth_ == 1) {
      space_ = space;
      outline_.coding = reader_.coding();
      outline_.root_tag = place;
      return;
    }
    if (space != space_) return;
    if (depth_ == 2 && name == "file") {
      outline_.files.push_back({place, place, {}, {}, false});
      in_file_ = true;
    } else if (in_file_ && depth_ == 4 && name == "skl") {
      outline_.files.back().skeleton_tag = outline_.files.back().skeleton = place;
      in_skeleton_ = true;
    } else if (in_skeleton_ && name == "internal-file") {
      outline_.files.back().has_skeleton_inside = true;
    }
  }

  void end(std::string_view, std::string_view, XmlPlace place) override {
    const int depth = depth_--;
    if (in_skeleton_ && depth == 4) {
      outline_.files.back().skeleton.end = place.end;
      in_skeleton_ = false;
    }
    if (in_file_ && depth == 2) {
      outline_.files.back().whole.end = place.end;
      in_file_ = false;
    }
  }

  void text(std::string_view) override {}

 private:
  XmlReader reader_;
  XliffOutline outline_;
  std::string space_;  // the namespace of the document's own elements
  int depth_ = 0;      // of open elements
  bool in_file_ = false;
  bool in_skeleton_ = false;
};

}  // namespace

XliffOutline read_outline(std::u16string_view path) { return OutlineReader(path).read(); }

}  // namespace kavo
