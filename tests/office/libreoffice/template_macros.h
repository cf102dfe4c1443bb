// The macros of a template, run by LibreOffice's own Basic on documents of ours.
#pragma once

#include <com/sun/star/lang/XComponent.hpp>
#include <string>
#include <string_view>

namespace kavo::test {

class TemplateMacros {
 public:
  // Opens a template, its macros allowed.
  explicit TemplateMacros(std::u16string_view template_file);
  ~TemplateMacros();
  TemplateMacros(const TemplateMacros&) = delete;
  TemplateMacros& operator=(const TemplateMacros&) = delete;

  // Adds or replaces a module of the project.
  void put_module(std::string_view name, std::string_view text);
  // Runs statements that give "Evaluate" a text and returns that, or the description of the error they raised, or "not
  // compiled" when a module of the project cannot be.
  std::string evaluate(std::string_view statements);
  // Opens a workbook, runs "Module.Macro" and closes it again, saved when the macro ended well. Returns what it raised,
  // nothing when it ended well.
  std::string run_on(std::u16string_view workbook, std::string_view macro);

 private:
  com::sun::star::uno::Reference<com::sun::star::lang::XComponent> template_;
};

}  // namespace kavo::test
