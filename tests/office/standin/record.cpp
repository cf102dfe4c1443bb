#include "office/standin/record.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "office/standin/programs.h"
#include "platform/unicode.h"
#include "platform/win32/text.h"

namespace kavo::test {

bool Record::add(const std::string& line) const {
  const std::filesystem::path path = folder_ / kCallsFile;
  std::size_t number = 1;
  {
    std::ifstream before(path, std::ios::binary);
    number += static_cast<std::size_t>(std::count(std::istreambuf_iterator<char>(before), {}, '\n'));
  }
  std::ofstream(path, std::ios::binary | std::ios::app) << line << '\n';
  const std::string this_call = std::to_string(number);
  if (planned("die", "") == this_call) TerminateProcess(GetCurrentProcess(), 1);
  return planned("fail", "") == this_call;
}

std::string Record::planned(std::string_view key, std::string_view missing) const {
  std::ifstream plan(folder_ / kPlanFile);
  std::string line;
  while (std::getline(plan, line))
    if (line.starts_with(std::string(key) + '=')) return line.substr(key.size() + 1);
  return std::string(missing);
}

std::string text_of(const VARIANT& argument) {
  const bool by_reference = (V_VT(&argument) & VT_BYREF) != 0;
  VARIANT value{};
  if (FAILED(VariantCopyInd(&value, const_cast<VARIANT*>(&argument)))) return "(unreadable)";
  const std::string mark = by_reference ? "& " : " ";
  std::string text;
  switch (V_VT(&argument) & ~VT_BYREF) {
    case VT_BSTR:
      text = "BSTR" + mark + '"' + to_utf8(from_bstr(V_BSTR(&value))) + '"';
      break;
    case VT_BOOL:
      text = "BOOL" + mark + (V_BOOL(&value) == VARIANT_TRUE ? "true" : V_BOOL(&value) == 0 ? "false" : "(neither)");
      break;
    case VT_I2:
      text = "I2" + mark + std::to_string(V_I2(&value));
      break;
    case VT_I4:
      text = "I4" + mark + std::to_string(V_I4(&value));
      break;
    case VT_ERROR:
      text = "ERROR" + mark + (V_ERROR(&value) == DISP_E_PARAMNOTFOUND ? "omitted" : "(other)");
      break;
    default:
      text = "VT" + std::to_string(V_VT(&argument));
  }
  VariantClear(&value);
  return text;
}

std::string text_of(const DISPPARAMS& arguments) {
  std::string text = "(";
  for (UINT i = arguments.cArgs; i-- > arguments.cNamedArgs;) {
    text += text_of(arguments.rgvarg[i]);
    if (i > arguments.cNamedArgs) text += ", ";
  }
  return text + ')';
}

}  // namespace kavo::test
