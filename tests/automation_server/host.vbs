' A VBScript host of the library. Argument: an empty folder for its files.
Option Explicit
Dim files, folder, page, wizard, checks
Set files = CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
checks = 0

Sub Check(what, found, expected)
  checks = checks + 1
  If VarType(found) <> VarType(expected) And Not (IsNumeric(found) And IsNumeric(expected)) Then
    WScript.Echo "FAILED " & what & ": found a " & TypeName(found) & ", expected a " & TypeName(expected)
  ElseIf found <> expected Then
    WScript.Echo "FAILED " & what & ": found """ & found & """, expected """ & expected & """"
  End If
End Sub

Sub WriteFile(name, text)
  Dim stream
  Set stream = files.CreateTextFile(name, True)
  stream.Write text
  stream.Close
End Sub

Set wizard = CreateObject("K19FPW.K19FPWObj")

' A new object.
Check "type", TypeName(wizard), "_K19FPWObj"
Check "count at first", wizard.GetFileCount, 0
Check "file at first", wizard.GetFile(0), ""
Check "quiet at first", wizard.QuietMode, 0
Check "error at first", wizard.LastError, ""

' A text passes through.
page = folder & "\notes.txt"
WriteFile page, "plain" & vbCrLf
Check "text prepared", wizard.PreProcess(page), 0
Check "text count", wizard.GetFileCount(), 1
Check "text name", wizard.GetFile(0), page
Check "past the text", wizard.GetFile(1), ""
Check "name kept", page, folder & "\notes.txt"

' A server page becomes a page and its scripts.
page = folder & "\index.asp"
WriteFile page, "<html><head><title>Shop</title></head><body>" & vbCrLf & _
  "<p>Hello <% If x Then Response.Write ""you"" %></p>" & vbCrLf & "</body></html>" & vbCrLf
Dim result
result = wizard.PreProcess(page)
Check "page prepared", result, 0
Check "page count", wizard.GetFileCount, 2
Dim index, names
index = 0
Do While index < wizard.GetFileCount
  names = wizard.GetFile(index)
  Check "produced file " & index & " exists", files.FileExists(names), True
  index = index + 1
Loop
Check "script file", LCase(Right(wizard.GetFile(1), 4)), ".scr"

' Arguments of any type that converts.
Check "number as text", wizard.GetFile("0") <> "", True
Check "number as fraction", wizard.GetFile(0.4) <> "", True
Check "number in brackets", wizard.GetFile((index)), ""
Check "number past the list", wizard.GetFile(4), ""
Dim nothingYet
Check "an empty variable is 0", wizard.GetFile(nothingYet) <> "", True

' A missing page is a failed preparation.
Check "missing page", wizard.PreProcess(folder & "\missing.asp"), 3
Check "missing page's count", wizard.GetFileCount, 0

' The quiet flag.
wizard.QuietMode = 1
Check "quiet", wizard.QuietMode, 1
wizard.QuietMode = "2"
Check "quiet from text", wizard.QuietMode, 2

' Failures that are returned: there is no such document.
Dim target
target = folder & "\target.asp"
Check "no document", wizard.CreateTranslation(folder & "\missing.tud", target, 0, 0), 1
Check "its text", wizard.LastError, "Failed to open TUD file"

' Failures that are raised.
On Error Resume Next
result = wizard.GetFile(-1)
Check "negative index", Err.Number, 9
Check "its description", Err.Description, "Subscript out of range"
Check "its source", Err.Source, "K19FPW.K19FPWObj"
Err.Clear
result = wizard.GetFile("one")
Check "text that is no number", Err.Number, 13
Err.Clear
result = wizard.GetFile(3000000000)
Check "number too large", Err.Number, 6
Err.Clear
result = wizard.PreProcess()
Check "argument missing", Err.Number, 450
Err.Clear
result = wizard.GetFileCount(1)
Check "argument too many", Err.Number, 450
Err.Clear
wizard.LastError = "mine"
Check "read-only property", Err.Number <> 0, True
Err.Clear
result = wizard.NoSuchMember
Check "no such member", Err.Number, 438
Err.Clear
On Error GoTo 0

' Two at a time.
Dim other
Set other = CreateObject("K19FPW.K19FPWObj")
other.QuietMode = 7
Check "the first keeps its flag", wizard.QuietMode, 2
Check "the second has its own", other.QuietMode, 7
Set other = Nothing
Check "the first lives on", wizard.QuietMode, 2

' The suite's catalogue through the same door.
Dim catalogue, firstText, secondText, filterName, value
Set catalogue = CreateObject("K19Suite.FilterCatalogue")
Check "first filter", catalogue.Enumerate(0, firstText, secondText, filterName, value), 1
Check "filter name written back", filterName, "K19DOCW"
Check "value written back", value, 1
Check "past the last filter", catalogue.Enumerate(1000, firstText, secondText, filterName, value), 0

WScript.Echo checks & " checks"
WScript.Echo "done"
