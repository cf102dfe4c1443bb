#include "ui/win32/visual_styles.h"

// The linker's name for the first byte of the module: its address is the module's handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace kavo {
namespace {

constexpr WORD kManifest = 2;  // as in visual_styles.rc

}  // namespace

VisualStyles::VisualStyles() {
  ACTCTXW description{};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.hModule = reinterpret_cast<HMODULE>(&__ImageBase);
  description.lpResourceName = MAKEINTRESOURCEW(kManifest);
  context_ = CreateActCtxW(&description);
  if (context_ != INVALID_HANDLE_VALUE) active_ = ActivateActCtx(context_, &cookie_) != FALSE;
}

VisualStyles::~VisualStyles() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace kavo
