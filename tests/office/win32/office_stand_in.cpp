#include "office/win32/office_stand_in.h"

#include <objbase.h>

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "platform/program_folder.h"
#include "platform/unicode.h"
#include "platform/win32/text.h"

namespace kavo::test {
namespace {

constexpr DWORD kLongestWait = 10'000;  // milliseconds
constexpr std::wstring_view kClasses = L"Software\\Classes\\";

std::wstring text_of(REFCLSID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

// Windows lets everybody register classes for himself; Wine looks at those of the machine only. So both.
void write_key(const std::wstring& key, const std::wstring& text) {
  bool written = false;
  for (const HKEY hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    written |= RegSetKeyValueW(hive, (std::wstring(kClasses) + key).c_str(), nullptr, REG_SZ, text.c_str(),
                               static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
  if (!written) throw std::runtime_error("the stand-in cannot be registered");
}

void delete_key(const std::wstring& key) {
  for (const HKEY hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    RegDeleteTreeW(hive, (std::wstring(kClasses) + key).c_str());
}

std::wstring stand_in_path() {
  std::wstring path = to_wide(to_utf16(KAVO_STAND_IN));
  for (wchar_t& c : path)
    if (c == L'/') c = L'\\';
  return path;
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

}  // namespace

bool OfficeStandIn::is_free(const wchar_t* identifier) {
  CLSID id;
  return FAILED(CLSIDFromProgID(identifier, &id)) || id == find_stand_in_program(identifier)->class_id;
}

OfficeStandIn::OfficeStandIn(const wchar_t* identifier) : program_(*find_stand_in_program(identifier)) {
  const std::wstring name(program_.identifier);
  write_key(name, L"Stand-in");
  write_key(name + L"\\CLSID", text_of(program_.class_id));
  keys_.push_back(name);
  write_class(program_.class_id, kForObject);
}

OfficeStandIn::~OfficeStandIn() {
  end();
  for (const std::wstring& key : keys_) delete_key(key);
}

std::wstring OfficeStandIn::command_line(std::wstring_view role) const {
  return L'"' + stand_in_path() + L"\" \"" + to_wide(exchange_.path()) + L"\" " + program_.identifier + L' ' +
         std::wstring(role);
}

void OfficeStandIn::write_class(REFCLSID id, std::wstring_view role) {
  const std::wstring key = L"CLSID\\" + text_of(id);
  write_key(key, L"Stand-in");
  write_key(key + L"\\LocalServer32", command_line(role));
  keys_.push_back(key);
}

bool OfficeStandIn::register_files_only(const wchar_t* extension) {
  unique_hkey known;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, extension, 0, KEY_READ, known.put()) == ERROR_SUCCESS) return false;
  delete_key(program_.identifier);
  const std::wstring type = L"KavoStandIn.Document";
  write_key(extension, type);
  write_key(type + L"\\CLSID", text_of(program_.file_class_id));
  keys_.insert(keys_.end(), {extension, type});
  write_class(program_.file_class_id, kForFile);
  return true;
}

void OfficeStandIn::start() {
  std::wstring line = command_line(kRunning);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    throw std::runtime_error("the stand-in cannot be started");
  const unique_handle child(process.hProcess), thread(process.hThread);
  for (DWORD waited = 0; !exchange_.exists(kProcessFile); waited += 10) {
    if (waited > kLongestWait) throw std::runtime_error("the stand-in does not serve");
    Sleep(10);
  }
}

bool OfficeStandIn::has_ended() {
  if (!exchange_.exists(kProcessFile)) return true;
  const unique_handle process(OpenProcess(SYNCHRONIZE, FALSE, std::stoul(exchange_.read(kProcessFile))));
  if (process && WaitForSingleObject(process.get(), kLongestWait) != WAIT_OBJECT_0) return false;
  std::filesystem::remove(to_wide(exchange_.path(kProcessFile)));
  return true;
}

void OfficeStandIn::end() {
  const std::wstring folder = std::filesystem::path(to_wide(exchange_.path())).filename().native();
  const unique_handle stop(OpenEventW(EVENT_MODIFY_STATE, FALSE, (std::wstring(kStopEvent) + folder).c_str()));
  if (stop) SetEvent(stop.get());
  has_ended();
}

void OfficeStandIn::plan(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  exchange_.write(kPlanFile, text);
  exchange_.write(kCallsFile, "");
}

std::string OfficeStandIn::text() const {
  if (!exchange_.exists(kCallsFile)) return "";
  const std::string text = replaced(exchange_.read(kCallsFile), to_utf8(documents_.path()), "~");
  return replaced(text, to_utf8(program_folder()), "<program>");
}

std::vector<std::string> OfficeStandIn::calls() const {
  std::istringstream all(text());
  std::vector<std::string> calls;
  for (std::string call; std::getline(all, call);) calls.push_back(call);
  return calls;
}

}  // namespace kavo::test
