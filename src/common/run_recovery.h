// What a run does before it may work in a folder: it waits for other runs, and finishes or undoes one that was killed.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "platform/files.h"

namespace kavo {

using RunReport = std::function<void(const std::u16string& text)>;

inline constexpr double kBetweenLooks = 0.02;  // seconds, while a run waits for another one

// Locks a folder. Waits for another run up to a minute, and reports a longer wait. Throws `failure` 76 for a folder
// that does not exist and 70 when the wait is over, and `interruption` when the user interrupts.
std::unique_ptr<FileLock> lock_folder(FileSystem& files, const std::u16string& folder, const RunReport& report);

// If a killed run left its scratch folder: finishes or undoes the run and removes the folder. The caller holds the
// folder's lock. Throws `failure` when that fails, and 58 when the folder holds files that no run put there.
void recover(FileSystem& files, const std::u16string& scratch, const RunReport& report);

// Reports a scratch folder that could not be removed. Never throws.
void report_leftover(const RunReport& report, const std::u16string& scratch, const std::exception& reason) noexcept;

// The reason of a failed step for people.
std::u16string reason_of(const std::exception& error);

}  // namespace kavo
