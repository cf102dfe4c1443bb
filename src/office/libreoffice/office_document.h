// One document open in LibreOffice.
#pragma once

#include <com/sun/star/frame/XModel.hpp>
#include <memory>
#include <string>
#include <string_view>

#include "office/libreoffice/office_listener.h"

namespace kavo {

enum class OfficeKind { kText, kPresentation, kWorkbook };

class OfficeDocument {
 public:
  // Opens a file in place, writes nothing beside it and runs none of its macros. Throws `failure` 53 when there is no
  // file, and 1004 when it is of another kind, protected, damaged or refused. From then to its closing LibreOffice has
  // the time of office/time_limit.h for each sign of life, or is ended.
  OfficeDocument(std::shared_ptr<OfficeListener> listener, OfficeKind kind, std::u16string_view path);
  // Closes it unsaved.
  ~OfficeDocument();
  OfficeDocument(const OfficeDocument&) = delete;
  OfficeDocument& operator=(const OfficeDocument&) = delete;

  OfficeListener& listener() const { return *listener_; }
  const com::sun::star::uno::Reference<com::sun::star::frame::XModel>& model() const { return model_; }
  // Absolute.
  const std::u16string& path() const { return path_; }

  // Writes the document through one of LibreOffice's filters, beside the target, and renames the complete file over the
  // target. Throws `failure`; the target is then as it was.
  void save_as(std::u16string_view path, std::string_view filter);
  // The same over the document's own file, in the release 97 format of its kind, or in the XML format when it came in
  // that.
  void save();
  // Unsaved. A second call does nothing.
  void close();

 private:
  void load();

  std::shared_ptr<OfficeListener> listener_;
  OfficeKind kind_;
  std::u16string path_;
  std::string filter_;
  com::sun::star::uno::Reference<com::sun::star::frame::XModel> model_;
};

}  // namespace kavo
