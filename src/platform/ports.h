// The ports in use: the system's adapters unless a test or the command puts another in place.
#pragma once

#include "platform/automation.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/profile_files.h"
#include "platform/registry.h"
#include "platform/shell.h"

namespace kavo {

// None of the pointers owns its adapter and none is ever null.
struct Ports {
  FileSystem* files;
  const CodePage* code_page;
  Registry* registry;
  ProfileFiles* profile_files;
  Shell* shell;
  Desktop* desktop;
  Clock* clock;
  Automation* automation;
};

// The calling thread's ports, initially the system's adapters (one set per process, made at first use).
Ports& ports();

// Replaces members of ports() for as long as it lives: `PortsScope scope; ports().files = &memory;`
class PortsScope {
 public:
  PortsScope() : saved_(ports()) {}
  ~PortsScope() { ports() = saved_; }
  PortsScope(const PortsScope&) = delete;
  PortsScope& operator=(const PortsScope&) = delete;

 private:
  Ports saved_;
};

}  // namespace kavo
