// The one failure type of the system.
//
// What a contract calls "raised" is thrown as `failure`. Ports throw it for every system error. At the edge of a public
// operation, converters turn it into entries of their message lists, the COM skin into an HRESULT with error info, and
// the command into an exit code and a message. The numbers are the run-time error numbers of automation hosts (VBA,
// VBScript), so that a host sees `Err.Number` 9, 53, 70 as it expects.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace kavo {

enum class FailureNumber : std::int32_t {
  kInvalidCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kInterrupted = 18,
  kInternal = 51,
  kFileNotFound = 53,
  kFileAlreadyOpen = 55,
  kDeviceError = 57,
  kFileAlreadyExists = 58,
  kDiskFull = 61,
  kTooManyFiles = 67,
  kPermissionDenied = 70,
  kDifferentDrive = 74,
  kPathFileAccess = 75,
  kPathNotFound = 76,
  kNoObject = 91,
  kCannotCreateObject = 429,
  kCannotBindToFile = 432,
  kNoSuchMember = 438,
  kWrongArgumentCount = 450,
};

// The message when memory runs out. It is a constant because there is no memory left to put a message together.
inline constexpr char kNotEnoughMemory[] = "not enough memory";

// Carries number, description and source. `what()` is the description in UTF-8.
class failure : public std::exception {
 public:
  failure(FailureNumber number, std::u16string description, std::u16string source = u"K19FPW");
  // For numbers that another program reported (an automation server's own).
  failure(std::int32_t number, std::u16string description, std::u16string source);

  std::int32_t number() const noexcept { return number_; }
  bool is(FailureNumber number) const noexcept { return number_ == static_cast<std::int32_t>(number); }
  const std::u16string& description() const noexcept { return description_; }
  const std::u16string& source() const noexcept { return source_; }
  const char* what() const noexcept override { return utf8_.c_str(); }

 private:
  std::int32_t number_;
  std::u16string description_;
  std::u16string source_;
  std::string utf8_;
};

// The user asked to stop. Deliberately not a `failure`, so that a handler that turns failures into results, or goes on
// without what failed, lets it through. Hosts see it as number 18.
class interruption : public std::exception {
 public:
  const char* what() const noexcept override { return "Interrupted by the user"; }
};
// The interruption as a `failure`, for places that can only report failures.
inline failure as_failure(const interruption&) { return {FailureNumber::kInterrupted, u"Interrupted by the user"}; }

}  // namespace kavo
