// The filter of presentations and workbooks: of the XML that an Office program writes of them (docs/office-xml.md).
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_office_xml_filter();

}  // namespace kavo
