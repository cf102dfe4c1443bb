// An engine that replaces LibreOffice's. Its programs take every document, write a few bytes where they are asked to,
// and then fail or not, as KAVO_STANDIN says: "fails", "makes nothing", or anything else.
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/automation.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kavo::test {
namespace {

std::string open_document;  // the one that was opened last, in the host's form

bool is_told(std::string_view what) {
  const char* const told = std::getenv("KAVO_STANDIN");
  return told && told == what;
}

void make(const std::string& path) {
  if (is_told("makes nothing")) return;
  std::ofstream(path, std::ios::binary) << (is_told("fails") ? "half" : "whole");
  if (is_told("fails")) throw failure(FailureNumber::kInternal, u"The program gave up");
}

Value nothing(std::span<Argument>) { return Empty{}; }

Value save(std::span<Argument>) {
  std::ofstream(open_document, std::ios::binary | std::ios::app) << " saved";
  return Empty{};
}

class Fields final : public TableObject {
 public:
  Fields() : TableObject({{u"Count", MemberKind::kPropertyGet, 0, 0, [](auto) { return Value(std::int32_t{0}); }}}) {}
};

class Document final : public TableObject {
 public:
  Document()
      : TableObject({
            {u"Fields", MemberKind::kPropertyGet, 0, 0, [](auto) { return Value(std::make_shared<Fields>()); }},
            {u"Saved", MemberKind::kPropertyPut, 0, 1, nothing},
            {u"Save", MemberKind::kMethod, 0, 0, save},
            {u"Close", MemberKind::kMethod, 0, 1, nothing},
            {u"SaveAs", MemberKind::kMethod, 2, 2,
             [](std::span<Argument> arguments) {
               make(path_to_host(as_text(arguments[0].value)));
               return Value(Empty{});
             }},
        }) {}
};

class Documents final : public TableObject {
 public:
  Documents()
      : TableObject({{u"Open", MemberKind::kMethod, 1, 4, [](std::span<Argument> arguments) {
                        open_document = path_to_host(as_text(arguments[0].value));
                        return Value(std::make_shared<Document>());
                      }}}) {}
};

Value documents(std::span<Argument>) { return std::make_shared<Documents>(); }

// Exports to "deck_ppt.xml", imports into "deck.ppt".
Value run_macro(std::span<Argument> arguments) {
  const std::string flag = open_document + ".kavo";
  const bool exports = as_text(arguments[0].value).find(u"!Export") != std::u16string::npos;
  std::string xml = open_document + ".xml";
  xml[xml.rfind('.', xml.size() - 5)] = '_';
  make(exports ? xml : open_document);
  std::remove(flag.c_str());
  return Empty{};
}

class Application final : public TableObject {
 public:
  Application()
      : TableObject({
            {u"Visible", MemberKind::kPropertyPut, 0, 1, nothing},
            {u"DisplayAlerts", MemberKind::kPropertyPut, 0, 1, nothing},
            {u"AutomationSecurity", MemberKind::kPropertyPut, 0, 1, nothing},
            {u"Version", MemberKind::kPropertyGet, 0, 0, [](auto) { return Value(u"11.0"); }},
            {u"Documents", MemberKind::kPropertyGet, 0, 0, documents},
            {u"Presentations", MemberKind::kPropertyGet, 0, 0, documents},
            {u"Workbooks", MemberKind::kPropertyGet, 0, 0, documents},
            {u"Run", MemberKind::kMethod, 1, 1, run_macro},
            {u"Quit", MemberKind::kMethod, 0, 1, nothing},
        }) {}
};

}  // namespace
}  // namespace kavo::test

extern "C" void kavo_office_engine_begin() {
  for (const char16_t* identifier : {u"Word.Application", u"PowerPoint.Application", u"Excel.Application"})
    kavo::register_factory(identifier, [] { return std::make_shared<kavo::test::Application>(); });
}

extern "C" void kavo_office_engine_end() {}
