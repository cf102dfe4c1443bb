#include "office/libreoffice/office_listener.h"

#include <com/sun/star/bridge/UnoUrlResolver.hpp>
#include <com/sun/star/connection/NoConnectException.hpp>
#include <com/sun/star/frame/Desktop.hpp>
#include <com/sun/star/frame/TerminationVetoException.hpp>
#include <cppuhelper/bootstrap.hxx>
#include <cppuhelper/implbase1.hxx>
#include <rtl/bootstrap.hxx>

#include "office/libreoffice/uno_text.h"
#include "platform/adapters.h"
#include "platform/desktop.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using com::sun::star::bridge::UnoUrlResolver;
using com::sun::star::connection::NoConnectException;
using com::sun::star::uno::Exception;
using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY_THROW;
using com::sun::star::uno::XComponentContext;

constexpr double kLongestStart = 60;    // seconds; 1 to 3 are usual
constexpr double kLongestEnd = 5;       // seconds for an orderly end; then it is killed, and nothing is lost
constexpr double kLookAgain = 0.02;     // seconds between two attempts to connect
constexpr double kWatchInterval = 0.1;  // seconds
constexpr double kPatience = 0.5;       // seconds that a call has to end by itself once the user asked to stop

// This is always the system's clock, even in tests with their own clock, because it measures another process.
double now() { return system_clock().seconds(); }

// The UNO components of this process. The connection needs to know all types that may come through it.
Reference<XComponentContext> local_context(const std::filesystem::path& program_folder) {
  const auto make = [&] {
    rtl::Bootstrap::set("URE_MORE_TYPES", url_of_host((program_folder / "types" / "offapi.rdb").string()));
    return cppu::defaultBootstrap_InitialComponentContext();
  };
  static const Reference<XComponentContext> context = make();
  return context;
}

// LibreOffice ends when its last frame is closed, unless somebody objects.
class Objection final : public cppu::WeakImplHelper1<com::sun::star::frame::XTerminateListener> {
 public:
  void SAL_CALL queryTermination(const com::sun::star::lang::EventObject&) override {
    throw com::sun::star::frame::TerminationVetoException();
  }
  void SAL_CALL notifyTermination(const com::sun::star::lang::EventObject&) override {}
  void SAL_CALL disposing(const com::sun::star::lang::EventObject&) override {}
};

}  // namespace

OfficeListener::OfficeListener(const std::filesystem::path& program_folder, double longest_call)
    : program_folder_(program_folder), longest_call_(longest_call), process_(program_folder) {
  try {
    connect();
  } catch (const Exception& exception) {
    throw failure(FailureNumber::kCannotCreateObject, u"LibreOffice cannot be reached: " + from_uno(exception.Message));
  }
  watcher_ = std::thread([this] { watch(); });
}

OfficeListener::~OfficeListener() {
  try {
    longest_call_ = kLongestEnd;
    end_document();
    run([&] {
      desktop_->removeTerminateListener(objection_);
      desktop_->terminate();
    });
    const double give_up = now() + kLongestEnd;
    while (process_.is_running() && now() < give_up) system_clock().sleep(kLookAgain);
  } catch (const std::exception&) {
    // It has crashed, or will be killed.
  }
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  watcher_.join();
  process_.kill();
}

void OfficeListener::connect() {
  const Reference<XComponentContext> local = local_context(program_folder_);
  const auto resolver = UnoUrlResolver::create(local);
  const rtl::OUString url = to_uno(to_utf16("uno:" + process_.connection() + ";urp;StarOffice.ComponentContext"));
  const double give_up = now() + kLongestStart;
  while (!context_.is()) {
    try {
      context_.set(resolver->resolve(url), UNO_QUERY_THROW);
    } catch (const NoConnectException&) {
      throw_if_interrupted();
      if (!process_.is_running() || now() > give_up)
        throw failure(FailureNumber::kCannotCreateObject, u"LibreOffice could not be started");
      system_clock().sleep(kLookAgain);
    }
  }
  desktop_ = com::sun::star::frame::Desktop::create(context_);
  objection_ = new Objection;
  desktop_->addTerminateListener(objection_);
  process_.note_sockets();
}

void OfficeListener::step() {
  throw_if_interrupted();
  const std::lock_guard lock(mutex_);
  last_sign_ = now();
}

void OfficeListener::begin_document(double seconds) {
  const std::lock_guard lock(mutex_);
  document_time_ = seconds;
}

void OfficeListener::end_document() {
  const std::lock_guard lock(mutex_);
  document_time_ = 0;
}

void OfficeListener::begin_watch() {
  const std::lock_guard lock(mutex_);
  last_sign_ = now();
  if (++watched_ == 1) changed_.notify_all();
}

void OfficeListener::end_watch() {
  const std::lock_guard lock(mutex_);
  last_sign_ = now();
  --watched_;
}

void OfficeListener::watch() {
  std::unique_lock lock(mutex_);
  double wanted_since = 0;  // when the request to stop was first seen, 0 for none
  while (!ending_) {
    if (watched_ == 0) {
      wanted_since = 0;
      changed_.wait(lock);
      continue;
    }
    changed_.wait_for(lock, std::chrono::duration<double>(kWatchInterval));
    if (watched_ == 0 || killed_ != Killed::kNo) continue;
    if (!interrupt_requested())
      wanted_since = 0;
    else if (wanted_since == 0)
      wanted_since = now();
    if (wanted_since != 0 && now() - wanted_since > kPatience)
      killed_ = Killed::kInterrupted;
    else if (now() - last_sign_ > (document_time_ != 0 ? document_time_ : longest_call_))
      killed_ = Killed::kHung;
    if (killed_ != Killed::kNo) process_.kill();
  }
}

void OfficeListener::throw_as_failure(const Exception& exception, bool was_gone) {
  is_gone_ = is_gone_ || was_gone;
  const auto [killed, seconds] = [&] {
    const std::lock_guard lock(mutex_);
    return std::pair(killed_, document_time_);
  }();
  if (killed == Killed::kInterrupted) throw_if_interrupted();
  if (killed == Killed::kHung && seconds != 0)
    throw office_failure(formatted(
        u"LibreOffice gave no sign of life for {} s and was ended. The setting office.time-limit allows it more",
        static_cast<std::int64_t>(seconds)));
  if (killed == Killed::kHung) throw office_failure(u"LibreOffice stopped answering and was ended");
  if (killed == Killed::kInterrupted || !is_alive()) throw office_failure(u"LibreOffice ended unexpectedly");
  throw office_failure(exception.Message.isEmpty() ? std::u16string(u"LibreOffice refused a call")
                                                   : from_uno(exception.Message));
}

}  // namespace kavo
