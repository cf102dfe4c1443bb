// The connection to one running LibreOffice.
//
// A call to LibreOffice may block for any time, and it cannot be cancelled. So a watching thread kills LibreOffice when
// it shows no sign of life for longer than the document is worth, or when the user asks to stop. The blocked call then
// fails.
#pragma once

#include <com/sun/star/frame/XDesktop2.hpp>
#include <com/sun/star/lang/DisposedException.hpp>
#include <com/sun/star/uno/Exception.hpp>
#include <com/sun/star/uno/XComponentContext.hpp>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "office/libreoffice/office_process.h"
#include "platform/failure.h"

namespace kavo {

// The number of every error that an Office program reports itself.
constexpr std::int32_t kOfficeError = 1004;
inline failure office_failure(std::u16string description) {
  return failure(kOfficeError, std::move(description), u"LibreOffice");
}

class OfficeListener {
 public:
  // How many seconds a call may take that does not belong to a document.
  static constexpr double kLongestCall = 60;

  // Starts LibreOffice from the folder of its programs and waits until it serves. Throws `failure` 429 when it is not
  // there or does not start, and `interruption` when the user interrupts.
  explicit OfficeListener(const std::filesystem::path& program_folder, double longest_call = kLongestCall);
  // Ends it.
  ~OfficeListener();
  OfficeListener(const OfficeListener&) = delete;
  OfficeListener& operator=(const OfficeListener&) = delete;

  const com::sun::star::uno::Reference<com::sun::star::uno::XComponentContext>& context() const { return context_; }
  const com::sun::star::uno::Reference<com::sun::star::frame::XDesktop2>& desktop() const { return desktop_; }
  OfficeProcess& process() { return process_; }
  // False once it has ended or was found gone.
  bool is_alive() { return !is_gone_ && process_.is_running(); }

  // Runs calls to LibreOffice under watch. Whatever LibreOffice raises is thrown as `failure` 1004, with its own
  // description or with the message that it crashed or hung. Throws `interruption` when the user interrupts. May be
  // nested.
  template <class Step>
  auto run(Step&& step) {
    const Watched watched(*this);
    try {
      return std::forward<Step>(step)();
    } catch (const com::sun::star::lang::DisposedException& exception) {
      throw_as_failure(exception, true);
    } catch (const com::sun::star::uno::Exception& exception) {
      throw_as_failure(exception, false);
    }
  }

  // A sign of life, for long work between calls. Throws `interruption` when the user asks to stop.
  void step();
  // From now on, until end_document(), LibreOffice may be without a sign of life for this many seconds. One document at
  // a time: a second one takes the place of the first.
  void begin_document(double seconds);
  void end_document();

 private:
  class Watched {
   public:
    explicit Watched(OfficeListener& listener) : listener_(listener) { listener_.begin_watch(); }
    ~Watched() { listener_.end_watch(); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

   private:
    OfficeListener& listener_;
  };

  void connect();
  void begin_watch();
  void end_watch();
  void watch();
  [[noreturn]] void throw_as_failure(const com::sun::star::uno::Exception& exception, bool was_gone);

  enum class Killed { kNo, kHung, kInterrupted };

  std::filesystem::path program_folder_;
  double longest_call_;
  OfficeProcess process_;
  com::sun::star::uno::Reference<com::sun::star::uno::XComponentContext> context_;
  com::sun::star::uno::Reference<com::sun::star::frame::XDesktop2> desktop_;
  com::sun::star::uno::Reference<com::sun::star::frame::XTerminateListener> objection_;  // to its own end

  std::mutex mutex_;
  std::condition_variable changed_;
  int watched_ = 0;           // how deep run() is nested
  double last_sign_ = 0;      // system clock of the last step
  double document_time_ = 0;  // seconds without a sign of life that the document may take, 0 for no document
  bool ending_ = false;
  Killed killed_ = Killed::kNo;
  bool is_gone_ = false;
  std::thread watcher_;
};

}  // namespace kavo
