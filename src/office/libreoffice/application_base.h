// What the applications share: their visibility, their version and the documents that they hold open.
#pragma once

#include <memory>
#include <vector>

#include "office/libreoffice/office_document.h"
#include "platform/automation.h"

namespace kavo {

// The version of LibreOffice, such as "7.4".
std::u16string office_version(OfficeListener& listener);

// One application object's state; its documents hold it too, so that it lives as long as any of them.
struct ApplicationState {
  std::shared_ptr<OfficeListener> listener;
  bool is_visible = false;  // without effect: LibreOffice runs without a screen
  std::vector<std::weak_ptr<OfficeDocument>> documents;

  // Opens a document as OfficeDocument does and remembers it for close_all(). Never null.
  std::shared_ptr<OfficeDocument> open(OfficeKind kind, std::u16string_view path);
  // Closes every document that is still open, unsaved.
  void close_all();
};

// The members that every application has: Visible, Version and Quit.
std::vector<Member> application_members(const std::shared_ptr<ApplicationState>& state);

}  // namespace kavo
