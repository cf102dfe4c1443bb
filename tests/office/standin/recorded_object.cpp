#include "office/standin/recorded_object.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "platform/case_fold.h"
#include "platform/unicode.h"
#include "platform/win32/com_object.h"
#include "platform/win32/text.h"

namespace kavo::test {
namespace {

constexpr LONG kRtfFormat = 6;
constexpr HRESULT kRefused = static_cast<HRESULT>(0x800A03EC);  // run-time error 1004

// A call that is refused.
struct Refusal {
  HRESULT code;
  std::u16string description;
};

[[noreturn]] void refuse() { throw Refusal{kRefused, u"The call was refused"}; }

std::filesystem::path path_argument(const DISPPARAMS& arguments) {
  if (arguments.cArgs == 0) refuse();
  VARIANT value{};
  VariantCopyInd(&value, &arguments.rgvarg[arguments.cArgs - 1]);
  if (V_VT(&value) != VT_BSTR) refuse();
  const unique_bstr text(V_BSTR(&value));
  return to_wide(from_bstr(text.get()));
}

class RecordedObject final : public ComObject<IDispatch, IPersistFile> {
 public:
  RecordedObject(Program& program, std::string name) : program_(program), name_(std::move(name)) {
    program_.object_made();
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return DISP_E_BADINDEX; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    const std::vector<Member>& known = members();
    for (std::size_t i = 0; count == 1 && i < known.size(); ++i) {
      if (known[i].object != kind() || !equal_ignoring_case(known[i].name, from_wide(names[0]))) continue;
      *ids = static_cast<DISPID>(i);
      return S_OK;
    }
    std::fill(ids, ids + count, DISPID_UNKNOWN);
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* info, UINT*) noexcept override {
    const Member& member = members()[static_cast<std::size_t>(id)];
    if ((member.flags & flags) == 0) return DISP_E_MEMBERNOTFOUND;
    std::string line = name_ + '.' + to_utf8(member.name);
    const bool is_put = member.flags == DISPATCH_PROPERTYPUT;
    if (is_put || arguments->cArgs == 0) {
      line += is_put ? " = " + text_of(arguments->rgvarg[0]) : std::string();
    } else {
      line += text_of(*arguments);
    }
    try {
      if (program_.record().add(line)) refuse();
      VARIANT answer{};
      if (member.answer != nullptr) (this->*member.answer)(*arguments, answer);
      if (result != nullptr) *result = answer;
      return S_OK;
    } catch (const Refusal& refusal) {
      if (info != nullptr) {
        *info = {};
        info->scode = refusal.code;
        info->bstrSource = make_bstr(u"Stand-in").release();
        info->bstrDescription = make_bstr(refusal.description).release();
      }
      return DISP_E_EXCEPTION;
    }
  }

  // A document that somebody opens by its name alone.
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) noexcept override {
    *id = program_.kind().file_class_id;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE IsDirty() noexcept override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Load(LPCOLESTR file, DWORD) noexcept override {
    const std::filesystem::path path(file);
    name_ = path.filename() == program_.kind().template_name ? "Template" : "Document";
    if (name_ == "Document") program_.document() = StandInDocument(path);
    return program_.record().add("load \"" + to_utf8(from_wide(file)) + '"') ? kRefused : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Save(LPCOLESTR, BOOL) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR*) noexcept override { return E_NOTIMPL; }

 private:
  using Answer = void (RecordedObject::*)(const DISPPARAMS& arguments, VARIANT& answer);
  struct Member {
    std::string_view object;
    std::u16string_view name;
    WORD flags;
    Answer answer;  // null: nothing is done
  };

  ~RecordedObject() override { program_.object_gone(); }

  // The member's number is its place.
  static const std::vector<Member>& members() {
    constexpr WORD get = DISPATCH_PROPERTYGET;
    constexpr WORD put = DISPATCH_PROPERTYPUT;
    constexpr WORD method = DISPATCH_METHOD;
    static const std::vector<Member> all = {
        {"Application", u"Documents", get, &RecordedObject::collection},
        {"Application", u"Presentations", get, &RecordedObject::collection},
        {"Application", u"Workbooks", get, &RecordedObject::collection},
        {"Application", u"Version", get, &RecordedObject::version},
        {"Application", u"Visible", put, nullptr},
        {"Application", u"AutomationSecurity", put, nullptr},
        {"Application", u"DisplayAlerts", put, nullptr},
        {"Application", u"Run", method, &RecordedObject::run},
        {"Application", u"Quit", method, &RecordedObject::quit},
        {"Collection", u"Open", method, &RecordedObject::open},
        {"Document", u"Application", get, &RecordedObject::application},
        {"Document", u"Fields", get, &RecordedObject::fields},
        {"Document", u"Saved", put, nullptr},
        {"Document", u"Save", method, &RecordedObject::save},
        {"Document", u"SaveAs", method, &RecordedObject::save_as},
        {"Document", u"Close", method, &RecordedObject::close},
        {"Fields", u"Count", get, &RecordedObject::field_count},
        {"Field", u"Type", get, &RecordedObject::field_type},
        {"Field", u"Update", method, &RecordedObject::update},
        {"Field", u"Unlink", method, nullptr},
    };
    return all;
  }

  std::string_view kind() const {
    if (name_ == "Template") return "Document";
    if (name_ == to_utf8(from_wide(program_.kind().collection))) return "Collection";
    if (name_.starts_with("Field") && name_ != "Fields") return "Field";
    return name_;
  }

  void answer_object(VARIANT& answer, std::string name) {
    V_DISPATCH(&answer) = make_recorded_object(program_, std::move(name)).release();
    V_VT(&answer) = VT_DISPATCH;
  }

  std::vector<std::int32_t> field_types() const {
    std::istringstream planned(program_.record().planned("fields", ""));
    return {std::istream_iterator<std::int32_t>(planned), {}};
  }

  void collection(const DISPPARAMS&, VARIANT& answer) {
    answer_object(answer, to_utf8(from_wide(program_.kind().collection)));
  }
  void version(const DISPPARAMS&, VARIANT& answer) {
    V_BSTR(&answer) = make_bstr(to_utf16(program_.record().planned("version", "11.0"))).release();
    V_VT(&answer) = VT_BSTR;
  }
  void run(const DISPPARAMS& arguments, VARIANT&) {
    if (!program_.run_macro(path_argument(arguments).native())) refuse();
  }
  void quit(const DISPPARAMS&, VARIANT&) { program_.quit(); }
  void application(const DISPPARAMS&, VARIANT& answer) { answer_object(answer, "Application"); }

  void open(const DISPPARAMS& arguments, VARIANT& answer) {
    const std::filesystem::path path = path_argument(arguments);
    const bool is_template = path.filename() == program_.kind().template_name;
    if (!is_template) {
      if (!std::filesystem::exists(path) || program_.record().planned("open", "") == "refused") refuse();
      program_.document() = StandInDocument(path);
    }
    answer_object(answer, is_template ? "Template" : "Document");
  }
  void close(const DISPPARAMS&, VARIANT&) {
    if (name_ == "Document") program_.document() = {};
  }
  void save(const DISPPARAMS&, VARIANT&) {
    const std::filesystem::path& path = program_.document().path();
    if (path.empty()) refuse();
    program_.document().save(path);
  }
  void save_as(const DISPPARAMS& arguments, VARIANT&) {
    VARIANT format{};
    if (arguments.cArgs != 2 || FAILED(VariantChangeType(&format, &arguments.rgvarg[0], 0, VT_I4))) refuse();
    const std::filesystem::path path = path_argument(arguments);
    V_I4(&format) == kRtfFormat ? program_.document().save_as_rtf(path) : program_.document().save(path);
  }
  void fields(const DISPPARAMS& arguments, VARIANT& answer) {
    if (arguments.cArgs == 0) return answer_object(answer, "Fields");
    VARIANT index{};
    if (FAILED(VariantChangeType(&index, &arguments.rgvarg[0], 0, VT_I4))) refuse();
    answer_object(answer, "Field" + std::to_string(V_I4(&index)));
  }
  void field_count(const DISPPARAMS&, VARIANT& answer) {
    V_I4(&answer) = static_cast<LONG>(field_types().size());
    V_VT(&answer) = VT_I4;
  }
  void field_type(const DISPPARAMS&, VARIANT& answer) {
    V_I4(&answer) = field_types().at(std::stoul(name_.substr(5)) - 1);
    V_VT(&answer) = VT_I4;
  }
  void update(const DISPPARAMS&, VARIANT& answer) {
    V_BOOL(&answer) = static_cast<VARIANT_BOOL>(std::stoi(program_.record().planned("updated", "-1")));
    V_VT(&answer) = VT_BOOL;
  }

  Program& program_;
  std::string name_;
};

}  // namespace

unique_interface<IDispatch> make_recorded_object(Program& program, std::string name) {
  return unique_interface<IDispatch>(new RecordedObject(program, std::move(name)));
}

}  // namespace kavo::test
