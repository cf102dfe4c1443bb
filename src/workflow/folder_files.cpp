#include "workflow/folder_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

#include "common/document_kind.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "driver/tud_name.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/filter.h"
#include "workflow/path_pattern.h"

namespace kavo {
namespace {

bool is_selected(const FolderSelection& selection, const std::u16string& relative) {
  const auto fits = [&](const std::u16string& pattern) { return selects(pattern, relative); };
  return (selection.include.empty() || std::ranges::any_of(selection.include, fits)) &&
         std::ranges::none_of(selection.exclude, fits);
}

class Walk {
 public:
  // Files that `accepts` does not take are not even listed, since most files of a large folder do not matter.
  Walk(std::u16string_view top, const FolderSelection& selection, Accepts accepts)
      : top_(top), selection_(selection), accepts_(std::move(accepts)) {}

  std::vector<FolderFile> files() {
    std::vector<std::u16string> folders{u""};  // from the top; a stack
    while (!folders.empty()) {
      const std::u16string folder = std::move(folders.back());
      folders.pop_back();
      if (!is_new(path_in(top_, folder))) continue;
      const auto lock = settle_folder(path_in(top_, folder));
      list(folder, folders);
    }
    return std::move(files_);
  }

 private:
  bool is_new(const std::u16string& folder) {
    const auto identity = ports().files->identity(folder);
    const auto is_it = [&](const std::u16string& other) { return identity == ports().files->identity(other); };
    if (identity && std::ranges::any_of(selection_.leave_out, is_it)) return false;
    return !identity || seen_.emplace(identity->volume, identity->number).second;
  }

  void list(const std::u16string& folder, std::vector<std::u16string>& folders) {
    std::vector<std::u16string> below;
    for (const std::u16string& name : ports().files->find(path_in(path_in(top_, folder), u"*"))) {
      if (name.starts_with(u'.')) continue;
      const std::u16string relative = folder.empty() ? name : path_in(folder, name);
      std::u16string path = path_in(top_, relative);
      const auto info = ports().files->info(path);
      if (!info || info->is_special) continue;
      if (info->is_folder)
        below.push_back(relative);
      else if (is_selected(selection_, relative) && accepts_(path))
        files_.push_back({std::move(path), relative});
    }
    if (selection_.recursive) folders.insert(folders.end(), below.rbegin(), below.rend());
  }

  std::u16string top_;
  const FolderSelection& selection_;
  Accepts accepts_;
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen_;
  std::vector<FolderFile> files_;
};

// The types of a folder's files. The types that the user has added are looked up once for each extension, since a
// folder may hold thousands of pictures.
class Types {
 public:
  const FileTypeRow& row_of(const std::u16string& path) {
    const auto [entry, is_new] = types_.try_emplace(ascii_lower(extension_of(path)), kUnknownFile);
    if (is_new) entry->second = kind_of_document(path).type;
    return file_type_row(entry->second);
  }
  bool can_be_prepared(const std::u16string& path) {
    const FileTypeRow& row = row_of(path);
    // The filter gets a server page as the page that the preparation makes.
    const bool is_page = row.preparation == Preparation::kScripts;
    const std::u16string_view tag = is_page ? file_type_row(kHtmlPage).filter_tag : row.filter_tag;
    return !tag.empty() && std::ranges::any_of(all_filters(), [&](const FilterEntry& filter) {
      return filter.tag == tag && filter.make != nullptr;
    });
  }

 private:
  std::map<std::u16string, std::int32_t> types_;
};

std::u16string place_in_tree(const std::u16string& file, const std::vector<std::u16string>& trees) {
  const std::u16string whole = ports().files->absolute(file);
  for (const std::u16string& tree : trees) {
    const std::u16string top = path_in(ports().files->absolute(tree), u"");
    if (whole.size() > top.size() && equal_ignoring_case(whole.substr(0, top.size()), top))
      return whole.substr(top.size());
  }
  return file_name_of(file);
}

// Recognises what preparing and rebuilding made by the names beside a file.
class OwnOutputs {
 public:
  OwnOutputs(const std::vector<FolderFile>& files, Types& types) {
    for (const FolderFile& file : files) names_.insert(file.path);
    for (const FolderFile& file : files) {
      if (is_bilingual_name(file.path)) add_translation_of(TudName(file.path));
      if (types.row_of(file.path).preparation == Preparation::kScripts) add_parts_of(file.path);
      if (FileTypeOf(file.path) == kWordDocument) made_.insert(rtf_name_of(file.path));
    }
  }
  bool contains(const std::u16string& path) const { return is_mif_side_file(path) || made_.contains(path); }

 private:
  using Names = std::set<std::u16string, LessIgnoringCase>;

  void add_translation_of(const TudName& tud) {
    // "my_page.htm" and "my_page.txt" have equally many parts, so both may be meant.
    for (const std::u16string& document : {tud.file_name(0, tud.part(1), false), tud.file_name(1, tud.part(2), false)})
      made_.insert(target_name_of(tud.folder(), document, tud.language()));
  }
  // An author's page that is named like a protected page has no script file beside it.
  void add_parts_of(const std::u16string& path) {
    PageNames page{.page = path, .html = {}, .script = {}};
    complete_from_page(page);
    if (names_.contains(page.script)) made_.insert({page.script, page.html});
  }

  Names names_;
  Names made_;
};

// Replaces each folder by what `listed` returns for it. Other files stay.
std::vector<FolderFile> expanded(const std::vector<std::u16string>& given, const FolderSelection& selection,
                                 const std::function<std::vector<FolderFile>(const std::u16string& folder)>& listed) {
  std::vector<FolderFile> files;
  for (const std::u16string& path : given) {
    const auto info = ports().files->info(path);
    if (!info || !info->is_folder) {
      files.push_back({path, place_in_tree(path, selection.trees)});
      continue;
    }
    const std::vector<FolderFile> found = listed(path);
    if (found.empty())
      throw failure(FailureNumber::kFileNotFound,
                    to_utf16(path_to_host(path)) + u": there is nothing to work on in this folder" +
                        (selection.recursive ? u"" : u"; --recursive looks into its folders, too"));
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

}  // namespace

bool is_bilingual_name(std::u16string_view path) { return ascii_lower(extension_of(path)) == u"tud"; }

std::u16string path_in(std::u16string_view folder, std::u16string_view relative) {
  std::u16string path(folder);
  if (!path.empty() && path.back() != u'\\') path += u'\\';
  return path += relative;
}

std::unique_ptr<FileLock> settle_folder(std::u16string_view folder) {
  return FolderRun::settle(
      folder, [](const std::u16string& message) { std::fprintf(stderr, "kavo: %s\n", to_utf8(message).c_str()); });
}

std::vector<FolderFile> files_of_folder(std::u16string_view folder, const FolderSelection& selection) {
  return Walk(folder, selection, [](const std::u16string&) { return true; }).files();
}

std::vector<FolderFile> files_meant(const std::vector<std::u16string>& given, const FolderSelection& selection,
                                    const Accepts& accepts) {
  return expanded(given, selection,
                  [&](const std::u16string& folder) { return Walk(folder, selection, accepts).files(); });
}

std::vector<FolderFile> sources_meant(const std::vector<std::u16string>& given, const FolderSelection& selection) {
  return expanded(given, selection, [&](const std::u16string& folder) {
    // What belongs to a document can be seen only among all files of its folder, and only in one listing, since another
    // run may make files between two.
    FolderSelection everything = selection;
    everything.include.clear();
    everything.exclude.clear();
    std::vector<FolderFile> found = files_of_folder(folder, everything);
    Types types;
    const OwnOutputs outputs(found, types);
    std::erase_if(found, [&](const FolderFile& file) {
      return !is_selected(selection, file.relative) || !types.can_be_prepared(file.path) || outputs.contains(file.path);
    });
    return found;
  });
}

std::vector<FolderFile> rest_of_folder(std::u16string_view folder, const FolderSelection& selection) {
  FolderSelection everything = selection;
  everything.recursive = true;
  everything.include.clear();
  everything.exclude.clear();
  std::vector<FolderFile> files = files_of_folder(folder, everything);
  Types types;
  const OwnOutputs outputs(files, types);
  std::erase_if(files, [&](const FolderFile& file) {
    const std::u16string name = ascii_lower(file_name_of(file.path));
    const bool is_ours = name == u"kavo.json" || name == u"removed.tmx" || name.ends_with(u".tud.skl");
    return is_ours || is_bilingual_name(file.path) || types.can_be_prepared(file.path) || outputs.contains(file.path);
  });
  return files;
}

}  // namespace kavo
