// The Office programs, served by LibreOffice: Word.Application, PowerPoint.Application and Excel.Application of the
// native automation port have the members that the conversions call, and the macros of the two templates.
#pragma once

#include <filesystem>
#include <memory>

namespace kavo {

class OfficeListener;

// Makes the three identifiers known to this process's automation port. LibreOffice is started by the first of them that
// is created and serves all; creating one throws `failure` 429 when it cannot be started.
void register_office_engine();
// Ends LibreOffice if it is running. Objects that still exist fail from then on.
void end_office_engine() noexcept;

// The LibreOffice that serves this process, started when there is none or the last one is gone. Throws `failure` 429.
std::shared_ptr<OfficeListener> office_listener();

// The folder of LibreOffice's own libraries and programs.
std::filesystem::path office_program_folder();

}  // namespace kavo
