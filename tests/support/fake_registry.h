// A registry in memory.
#pragma once

#include "platform/registry_tree.h"

namespace kavo::test {

using FakeRegistry = RegistryTree;

}  // namespace kavo::test
