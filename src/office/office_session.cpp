#include "office/office_session.h"

#include <utility>

#include "common/clsCommon.h"
#include "common/document_names.h"
#include "office/late_bound.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/program_folder.h"

namespace kavo {
namespace {

constexpr std::uint32_t kQuitMessage = 18;        // WM_QUIT
constexpr double kPollSeconds = 0.01;             // shorter than any macro, much longer than one look-up of a file
constexpr std::u16string_view kRelease97 = u"8";  // the release whose main window is quit by a message

std::u16string_view before_dot(std::u16string_view version) {
  const std::size_t dot = version.find(u'.');
  return dot == std::u16string_view::npos ? std::u16string_view() : version.substr(0, dot);
}

}  // namespace

OfficeSession::~OfficeSession() {
  try {
    if (initialised_) shut_down();
  } catch (const std::exception&) {
    // The program stays open; a destructor cannot report it.
  }
}

bool OfficeSession::reach() {
  if (!initialised_) start_up();
  return initialised_;
}

// Tries a running program, then a new one, then whatever program the template is registered for.
void OfficeSession::start_up() {
  Automation& automation = *ports().automation;
  const std::u16string template_file = program_folder() + u"\\" + std::u16string(program_.template_name);
  const std::u16string caller = ports().desktop->foreground_caption().value_or(u"");
  started_by_us_ = false;
  errors_.clear();
  if (errors_.run([&] { application_ = automation.active_object(program_.identifier); })) {
    show();
    open_template(template_file);
  } else {
    errors_.clear();
    if (errors_.run([&] { application_ = automation.create(program_.identifier); })) {
      started_by_us_ = true;
      show();
      open_template(template_file);
    } else {
      errors_.clear();
      if (errors_.run([&] { template_ = automation.bind_to_file(template_file); })) {
        started_by_us_ = true;
        errors_.run([&] { application_ = as_object(get_member(template_, u"application")); });
        show();
      }
    }
  }
  if (started_by_us_ && !caller.empty()) errors_.run([&] { ports().desktop->activate(caller); });
  find_main_window();
  initialised_ = application_ != nullptr;
}

void OfficeSession::show() { put(application_, u"Visible", true); }

void OfficeSession::open_template(const std::u16string& template_file) {
  template_ = open_file(by_value(template_file), true);
}

void OfficeSession::find_main_window() {
  main_window_ = 0;
  if (!application_) return;
  errors_.run([&] {
    const std::u16string version = as_text(get_member(application_, u"Version"));
    if (before_dot(version) == kRelease97) main_window_ = ports().desktop->find_window(program_.window_class);
  });
}

void OfficeSession::shut_down() {
  if (template_) call(template_, u"Close");
  if (started_by_us_) {
    if (main_window_ != 0) {
      errors_.run([&] { ports().desktop->post_message(main_window_, kQuitMessage); });
    } else {
      if (program_.quit_asks) put(application_, u"DisplayAlerts", false);
      call(application_, u"Quit");
    }
  }
}

ObjectRef OfficeSession::open(std::initializer_list<Argument> arguments) {
  ObjectRef document;
  errors_.run([&] {
    document = as_object(call_member(as_object(get_member(application_, program_.collection)), u"Open", arguments));
  });
  return document;
}

ObjectRef OfficeSession::open_file(Argument file_name, bool read_only) {
  if (program_.open_takes_update_links) return open({std::move(file_name), by_value(Omitted{}), by_value(read_only)});
  return open({std::move(file_name), by_value(read_only)});
}

void OfficeSession::put(const ObjectRef& object, std::u16string_view member, const Value& value) {
  errors_.run([&] { put_member(object, member, value); });
}

void OfficeSession::call(const ObjectRef& object, std::u16string_view member) {
  errors_.run([&] { call_member(object, member); });
}

void OfficeSession::run_macro(std::u16string_view macro, const std::u16string& flag_file, const ObjectRef& document) {
  try {
    run_and_wait(macro, flag_file, document != nullptr);
  } catch (...) {
    clsCommon().DeleteFile(flag_file);
    // The document is marked as saved, so that closing neither asks nor keeps what the macro has changed.
    put(document, u"Saved", true);
    call(document, u"Close");
    throw;
  }
}

void OfficeSession::run_and_wait(std::u16string_view macro, const std::u16string& flag_file, bool is_open) {
  const clsCommon common;
  errors_.run([&] { ports().files->open(flag_file, Access::kCreate)->close(); });
  const bool ran = errors_.run([&] { call_member(application_, u"Run", {by_value(std::u16string(macro))}); });
  if (!ran || !is_open) common.DeleteFile(flag_file);
  while (common.FileExists(flag_file)) {
    ports().desktop->process_messages();
    ports().clock->sleep(kPollSeconds);
  }
}

}  // namespace kavo
