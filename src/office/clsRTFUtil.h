// Takes the pictures and embedded objects out of an RTF document before translation and puts them back afterwards.
//
// Every group that starts with "{\pict" or "{\object" moves to an object side file; the hidden text
// "{\v\mor OBJ 1 }" marks its place (rtf_extraction.h, rtf_insertion.h, object_file.h). Extracting and then inserting
// gives back every byte.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "common/messages.h"
#include "common/progress_event.h"

namespace kavo {

class clsRTFUtil {
 public:
  const std::u16string& RTFFile() const { return rtf_file_; }
  void RTFFile(std::u16string_view value) { rtf_file_ = value; }
  // While it is empty, both operations set it to the document's name with the extension "obj". It then stays, also for
  // another RTFFile.
  const std::u16string& ObjFile() const { return obj_file_; }
  void ObjFile(std::u16string_view value) { obj_file_ = value; }

  // From here on ExtractObjects replaces ObjFile whatever it holds.
  void overwrite_object_file() { overwrites_object_file_ = true; }

  // Each rewrites RTFFile through the temporary file RTFFile & ".kavo.tmp" and returns 0, or 1 with the reason in
  // ErrorList().
  //
  // ExtractObjects returns 1 when a file cannot be read or written, the document is not RTF or already contains
  // markers, the old ObjFile has other content, or the two names mean one file. Both files are then as they were.
  //
  // InsertObjects returns 1 when the document could not be rewritten and is as it was, or when objects were missing and
  // their markers stayed in the new document. With 0 there may be a message about objects that have no marker any more.
  //
  // When the user interrupts, both throw `interruption` and leave both files as they were.
  std::int32_t ExtractObjects();
  std::int32_t InsertObjects();

  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }
  const MessageList& ErrorList() const { return errors_; }
  std::uint64_t object_count() const { return object_count_; }  // moved by the last call

 private:
  // What both operations share. `work` gets the name of the temporary file and returns whether everything was done.
  std::int32_t run(const std::function<bool(const std::u16string& temporary_file)>& work);
  void make_object_file_name();

  std::u16string rtf_file_;
  std::u16string obj_file_;
  bool overwrites_object_file_ = false;
  ProgressEvent progress_;
  MessageList errors_;
  std::uint64_t object_count_ = 0;
};

}  // namespace kavo
