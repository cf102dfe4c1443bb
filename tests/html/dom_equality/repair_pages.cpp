// Repairs every page of a folder in place, twice, and prints a line for each: name, result, repairs of the first and of
// the second run, message numbers of the first. One process for thousands of pages.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <vector>

#include "html/repair/clsHTMLValidate.h"
#include "platform/failure.h"
#include "platform/files.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: repair_pages FOLDER\n";
    return 2;
  }
  std::vector<std::filesystem::path> pages;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) pages.push_back(entry.path());
  std::sort(pages.begin(), pages.end());
  for (const auto& page : pages) {
    kavo::clsHTMLValidate validator;
    validator.Filename(kavo::path_from_host(page.string()));
    try {
      const int result = validator.HTMLValidate();
      const auto messages = validator.ErrorList();
      const auto repairs = validator.repairs();
      if (result == 0) validator.HTMLValidate();
      std::cout << page.filename().string() << '\t' << result << '\t' << repairs << '\t' << validator.repairs() << '\t';
      for (const auto& message : messages) std::cout << message.number << ' ';
      std::cout << '\n';
    } catch (const kavo::failure& reason) {
      std::cerr << page << ": " << reason.what() << '\n';
      return 1;
    }
  }
  return 0;
}
