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
  // Empty: both operations set it to the document's name with the extension "obj" in place of its own. It then stays,
  // also for another RTFFile.
  const std::u16string& ObjFile() const { return obj_file_; }
  void ObjFile(std::u16string_view value) { obj_file_ = value; }

  // From here on ExtractObjects replaces whatever lies under the name of ObjFile.
  void overwrite_object_file() { overwrites_object_file_ = true; }

  // Each rewrites RTFFile through the temporary file RTFFile & ".kavo.tmp" and answers 0, or 1 with the reason in
  // ErrorList(). After a 1 of ExtractObjects both files are as they were: a file could not be read or written, the
  // document is not RTF or already holds markers, the old ObjFile has other content, or the two names mean one file.
  // After a 1 of InsertObjects the document is as it was, or all of it was rewritten and those markers stayed whose
  // objects are missing; a 0 may come with a message about objects that have no marker any more. An interruption by the
  // user is thrown (`interruption`) and leaves both files as they were.
  std::int32_t ExtractObjects();
  std::int32_t InsertObjects();

  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }
  const MessageList& ErrorList() const { return errors_; }
  std::uint64_t object_count() const { return object_count_; }  // moved by the last call

 private:
  // The frame of both operations; `work` gets the temporary name and answers whether all is done.
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
