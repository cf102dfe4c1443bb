// The Office programs that the stand-in can be, and the files through which a test and the stand-in meet.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kavo::test {

struct StandInProgram {
  const wchar_t* identifier;
  CLSID class_id;       // the stand-in's own, not that of the real program
  CLSID file_class_id;  // of its documents, for who opens a file without knowing its program
  const wchar_t* collection;
  const wchar_t* template_name;
  const wchar_t* window_class;  // of release 97's main window
};

inline constexpr StandInProgram kStandInPrograms[] = {
    {L"Word.Application",
     {0xFBBF5FA9, 0x7FC5, 0x4177, {0x94, 0xF0, 0xBA, 0x84, 0x6E, 0x09, 0xDC, 0x15}},
     {0x5C1D5D07, 0x2A0F, 0x4E0B, {0x9A, 0x37, 0x60, 0x11, 0xB2, 0xC4, 0x7F, 0x93}},
     L"Documents",
     L"kavo.doc",
     L"OpusApp"},
    {L"PowerPoint.Application",
     {0xEF40F3FD, 0x722E, 0x43DD, {0xBE, 0xC9, 0x5C, 0xB3, 0xC8, 0xE0, 0xA5, 0xD8}},
     {0x8FBAADDB, 0x69AD, 0x4792, {0xB0, 0x25, 0x72, 0x08, 0xE4, 0x33, 0x6F, 0x5D}},
     L"Presentations",
     L"kavo.ppt",
     L"PP97FrameClass"},
    {L"Excel.Application",
     {0xE007A419, 0xFC70, 0x4AFA, {0x85, 0x79, 0x14, 0xD0, 0xEE, 0xEB, 0x94, 0x4C}},
     {0xD19BC2B6, 0x2E2C, 0x4F42, {0x9B, 0x0C, 0x7E, 0x0B, 0xB5, 0x2C, 0x5E, 0x01}},
     L"Workbooks",
     L"kavo.xls",
     L"XLMAIN"},
};

inline const StandInProgram* find_stand_in_program(std::wstring_view identifier) {
  for (const StandInProgram& program : kStandInPrograms)
    if (program.identifier == identifier) return &program;
  return nullptr;
}

// In the folder that the stand-in is given:
//   calls.txt     one line a call, in order, written before the call is answered; what is done with it is said there
//   plan.txt      "key=value" lines that the stand-in looks at in every call:
//                   version=8.0       what Version answers
//                   fields=58 1 88    the types of a document's fields
//                   updated=0         what Update answers: a 16-bit truth value
//                   open=refused      whether a document other than the template cannot be opened
//                   fail=3            the number of the call that fails (1004, "The call was refused", "Stand-in")
//                   die=3             the number of the call during which the program ends
//   process.txt   the number of the process, once it serves
inline constexpr std::u16string_view kCallsFile = u"calls.txt";
inline constexpr std::u16string_view kPlanFile = u"plan.txt";
inline constexpr std::u16string_view kProcessFile = u"process.txt";

// What it shall be, after the folder and the identifier on the command line: a program that the system starts to make
// its object, one that it starts to open a file, or one that was running before the test began. It offers no more than
// that: an offer that nobody takes would outlive a program that dies, under Wine.
inline constexpr std::wstring_view kForObject = L"--for-object";
inline constexpr std::wstring_view kForFile = L"--for-file";
inline constexpr std::wstring_view kRunning = L"--running";
// Signalled by the test when the stand-in shall end; the folder's own name follows.
inline constexpr std::wstring_view kStopEvent = L"KavoStandInStop-";

}  // namespace kavo::test
