#include "ui/frmProgress.h"

#include <string>

#include "common/clsCommon.h"
#include "platform/desktop.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::size_t kLongestName = 50;  // characters that the label holds on one line

}  // namespace

frmProgress::frmProgress()
    : Form(u"frmProgress"),
      lblFile(*this, u"lblFile", dialog_units(7, 7, 246, 8)),
      lblStep(*this, u"lblStep", dialog_units(7, 19, 246, 8)),
      prgDone(*this, u"prgDone", dialog_units(7, 31, 246, 8)),
      cmdCancel(*this, u"cmdCancel", dialog_units(203, 46, 50, 14)) {
  size(dialog_units(0, 0, 260, 67));
  Caption(text::kProgress.text);
  cmdCancel.Caption(text::kWizardCancel.text);
  cancel_button = &cmdCancel;
  cmdCancel.on_click = [this] {
    if (cancelled_) return;
    cancelled_ = true;
    request_interrupt();
  };
}

frmProgress::~frmProgress() {
  if (shown()) hide();
  if (!cancelled_) return;
  try {
    throw_if_interrupted();
  } catch (const std::exception&) {
    // The run is over, so only the flag had to be cleared.
  }
}

void frmProgress::report(TextRow step, std::u16string_view file, int percent) {
  // A "&" in the name must not become an access key.
  lblFile.Caption(clsCommon().SandR(clsCommon().SetCaption(file, kLongestName), u"&", u"&&"));
  lblStep.Caption(formatted(u"{}: {} %", step.text, percent));
  prgDone.Value(percent);
}

}  // namespace kavo
