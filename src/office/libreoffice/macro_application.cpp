#include "office/libreoffice/macro_application.h"

#include <algorithm>

#include "common/clsCommon.h"
#include "common/path_parts.h"
#include "office/libreoffice/application_base.h"
#include "office/libreoffice/macros.h"
#include "platform/case_fold.h"

namespace kavo {
namespace {

// A document that the macros can work on.
struct OpenDocument {
  std::shared_ptr<OfficeDocument> document;
  bool is_read_only = false;
  bool is_spoiled = false;  // a macro that changes it failed half-way
};

struct MacroState : ApplicationState {
  OfficeKind kind = OfficeKind::kPresentation;
  std::vector<std::shared_ptr<OpenDocument>> open_documents;
  std::u16string refusal;                // why the last document could not be opened
  std::int16_t automation_security = 1;  // without effect: macros never run
  bool display_alerts = true;            // without effect: there are no alerts
};
using StateRef = std::shared_ptr<MacroState>;

void close(MacroState& state, const std::shared_ptr<OpenDocument>& open) {
  std::erase(state.open_documents, open);
  open->document->close();
}

void save(const OpenDocument& open) {
  if (open.is_read_only) throw office_failure(u"The document was opened for reading only");
  if (open.is_spoiled) throw office_failure(u"The document is not saved, because its import failed half-way");
  open.document->save();
}

// The handshake with the caller, who makes this file and waits until it is gone.
std::u16string flag_of(const OpenDocument& open) { return open.document->path() + u".kavo"; }

// The document whose flag file exists: the caller waits for this one. The macros of the templates go by it, too.
OpenDocument& flagged_document(const MacroState& state) {
  const auto has_flag = [](const auto& open) { return clsCommon().FileExists(flag_of(*open)); };
  const auto found = std::ranges::find_if(state.open_documents, has_flag);
  if (found == state.open_documents.end())
    throw office_failure(state.refusal.empty() ? std::u16string(u"No open document has a flag file") : state.refusal);
  return **found;
}

void run_macro(MacroState& state, std::u16string_view name) {
  const OfficeMacro* macro = find_office_macro(state.kind, name);
  if (!macro) throw office_failure(u"There is no macro " + std::u16string(name));
  OpenDocument& open = flagged_document(state);
  open.is_spoiled = macro->changes_document;
  macro->run(*open.document);
  open.is_spoiled = false;
  clsCommon().DeleteFile(flag_of(open));
}

class MacroDocument final : public TableObject {
 public:
  MacroDocument(const ObjectRef& application, const StateRef& state, const std::shared_ptr<OpenDocument>& open)
      : TableObject(
            {{u"application", MemberKind::kPropertyGet, 0, 0, [application](auto) -> Value { return application; }},
             // Would decide whether Close asks about changes; here it never asks.
             {u"Saved", MemberKind::kPropertyPut, 1, 1, [](auto) -> Value { return Empty{}; }},
             {u"Save", MemberKind::kMethod, 0, 0,
              [open](auto) -> Value {
                save(*open);
                return Empty{};
              }},
             {u"Close", MemberKind::kMethod, 0, 0, [state, open](auto) -> Value {
                close(*state, open);
                return Empty{};
              }}}) {}
};

class TemplateDocument final : public TableObject {
 public:
  explicit TemplateDocument(const ObjectRef& application)
      : TableObject(
            {{u"application", MemberKind::kPropertyGet, 0, 0, [application](auto) -> Value { return application; }},
             {u"Close", MemberKind::kMethod, 0, 0, [](auto) -> Value { return Empty{}; }}}) {}
};

bool is_template(std::u16string_view path) {
  const std::u16string extension = extension_of(path);
  return equal_ignoring_case(stem_of(path), u"kavo") &&
         (equal_ignoring_case(extension, u"ppt") || equal_ignoring_case(extension, u"xls"));
}

ObjectRef open(const ObjectRef& application, const StateRef& state, std::u16string_view path, bool read_only) {
  if (is_template(path)) return std::make_shared<TemplateDocument>(application);
  auto opened = std::make_shared<OpenDocument>();
  state->refusal.clear();
  try {
    opened->document = state->open(state->kind, path);
  } catch (const failure& reason) {
    state->refusal = reason.description();
    throw;
  }
  opened->is_read_only = read_only;
  state->open_documents.push_back(opened);
  return std::make_shared<MacroDocument>(application, state, opened);
}

class MacroDocuments final : public TableObject {
 public:
  // Presentations.Open(FileName, ReadOnly) and Workbooks.Open(FileName, UpdateLinks, ReadOnly).
  MacroDocuments(const ObjectRef& application, const StateRef& state)
      : TableObject({{u"Open", MemberKind::kMethod, 1, state->kind == OfficeKind::kWorkbook ? 3u : 2u,
                      [application, state](std::span<Argument> arguments) -> Value {
                        const Value& read_only = arguments.back().value;
                        return open(application, state, as_text(arguments[0].value),
                                    !is_omitted(read_only) && as_flag(read_only));
                      }}}) {}
};

class MacroApplication final : public TableObject, public std::enable_shared_from_this<MacroApplication> {
 public:
  explicit MacroApplication(const StateRef& state) : TableObject(members_of(state)) {}

 private:
  std::vector<Member> members_of(const StateRef& state) {
    std::vector<Member> members = application_members(state);
    const bool is_workbook = state->kind == OfficeKind::kWorkbook;
    members.push_back(
        {is_workbook ? u"Workbooks" : u"Presentations", MemberKind::kPropertyGet, 0, 0,
         [this, state](auto) -> Value { return std::make_shared<MacroDocuments>(shared_from_this(), state); }});
    members.push_back({u"Run", MemberKind::kMethod, 1, 1, [state](std::span<Argument> arguments) -> Value {
                         run_macro(*state, as_text(arguments[0].value));
                         return Empty{};
                       }});
    if (!is_workbook) return members;
    members.push_back({u"AutomationSecurity", MemberKind::kPropertyGet, 0, 0,
                       [state](auto) -> Value { return state->automation_security; }});
    members.push_back(
        {u"AutomationSecurity", MemberKind::kPropertyPut, 1, 1, [state](std::span<Argument> arguments) -> Value {
           state->automation_security = static_cast<std::int16_t>(as_number(arguments[0].value));
           return Empty{};
         }});
    members.push_back(
        {u"DisplayAlerts", MemberKind::kPropertyGet, 0, 0, [state](auto) -> Value { return state->display_alerts; }});
    members.push_back(
        {u"DisplayAlerts", MemberKind::kPropertyPut, 1, 1, [state](std::span<Argument> arguments) -> Value {
           state->display_alerts = as_flag(arguments[0].value);
           return Empty{};
         }});
    return members;
  }
};

}  // namespace

ObjectRef make_macro_application(std::shared_ptr<OfficeListener> listener, OfficeKind kind) {
  const auto state = std::make_shared<MacroState>();
  state->listener = std::move(listener);
  state->kind = kind;
  return std::make_shared<MacroApplication>(state);
}

}  // namespace kavo
