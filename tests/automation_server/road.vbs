' A VBScript host that walks the whole road with the library and the reference suite: prepare, convert, translate,
' rebuild. Argument: an empty folder for its files. Files of the type .asp open with a program that leaves a file
' "<name>.opened" beside the one that it was given.
Option Explicit
Dim files, folder, wizard, catalogue, checks
Set files = CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
checks = 0

Sub Check(what, found, expected)
  checks = checks + 1
  If found <> expected Then WScript.Echo "FAILED " & what & ": found """ & found & """, expected """ & expected & """"
End Sub

Sub WriteFile(name, text)
  Dim stream
  Set stream = files.CreateTextFile(name, True)
  stream.Write text
  stream.Close
End Sub

Function ReadFile(name)
  Dim stream
  Set stream = files.OpenTextFile(name, 1)
  ReadFile = stream.ReadAll
  stream.Close
End Function

Function Has(text, part)
  Has = InStr(text, part) > 0
End Function

' Waits at most ten seconds.
Function Appears(name)
  Dim start
  start = Timer
  Do Until files.FileExists(name) Or Timer - start > 10
  Loop
  Appears = files.FileExists(name)
End Function

' The program that wrote the file may still have it open.
Sub DeleteSoon(name)
  Dim start
  start = Timer
  On Error Resume Next
  Do
    Err.Clear
    files.DeleteFile name
  Loop Until Err.Number = 0 Or Timer - start > 10
  Check "deleted " & name, Err.Number, 0
End Sub

' "C:\x\page_asp.htm" to "C:\x\page_asp_htm_FR.tud".
Function TudName(name)
  TudName = folder & "\" & files.GetBaseName(name) & "_" & files.GetExtensionName(name) & "_FR.tud"
End Function

Sub Translate(name)
  Dim document, number, source, target, status, match
  Set document = CreateObject("K19Suite.TUDDocument")
  Check "document opens", document.Open(name), 0
  For number = 1 To document.SegmentCount
    Check "segment is read", document.GetSegment(number, source, target, status, match), 0
    If Has(source, "Hello") Then
      Check "segment is written", document.SetSegment(number, Replace(source, "Hello", "Bonjour"), 2, 0), 0
    End If
    If Has(source, """you""") Then
      Check "script text is written", document.SetSegment(number, Replace(source, """you""", """vous"""), 2, 0), 0
    End If
  Next
  Check "document closes", document.Close, 0
End Sub

Set wizard = CreateObject("K19FPW.K19FPWObj")
Set catalogue = CreateObject("K19Suite.FilterCatalogue")
wizard.QuietMode = 1

Dim page, source, index, names(1), filters, plain, target, result, preview, highlight
page = folder & "\index.asp"
source = "<html><body>" & vbCrLf & "<p>Hello <% If x Then Response.Write ""you"" %></p>" & vbCrLf & _
  "</body></html>" & vbCrLf
WriteFile page, source
Check "page prepared", wizard.PreProcess(page), 0
Check "two files", wizard.GetFileCount, 2
filters = Array("K19HTM", "K19TXT")
For index = 0 To 1
  names(index) = TudName(wizard.GetFile(index))
  catalogue.Convert wizard.GetFile(index), names(index), names(index) & ".skl", "EN-US", 0, "FR", 0, filters(index), _
    "Paragraph"
  Check "document " & index & " is there", files.FileExists(names(index)), True
  Translate names(index)
Next

plain = Replace(Replace(source, "Hello", "Bonjour"), """you""", """vous""")
For Each preview In Array(0, 1, 2, 3, -1, -2, -256)
  For Each highlight In Array(0, 1, -1)
    target = ""
    result = wizard.CreateTranslation(names(0), target, preview, highlight)
    Check "rebuilt with preview " & preview & ", highlight " & highlight, result, 0
    Check "no error", wizard.LastError, ""
    Check "target is written back", LCase(target), LCase(folder & "\index_FR.asp")
    If highlight = 0 Then
      Check "page", ReadFile(target), plain
    Else
      Check "coloured page", ReadFile(target) <> plain, True
      Check "text of the coloured page", Has(ReadFile(target), "Bonjour"), True
      Check "script of the coloured page", Has(ReadFile(target), "<% If x Then Response.Write ""vous"" %>"), True
    End If
    If preview = 1 Or preview = 2 Then
      Check "opened for preview " & preview, Appears(target & ".opened"), True
      DeleteSoon target & ".opened"
    Else
      Check "not opened for preview " & preview, files.FileExists(target & ".opened"), False
    End If
  Next
Next

' A target of one's own, in another folder.
WriteFile folder & "\notes.txt", "Hello" & vbCrLf
Dim notes
notes = TudName(folder & "\notes.txt")
catalogue.Convert folder & "\notes.txt", notes, notes & ".skl", "EN-US", 0, "FR", 0, "K19TXT", "Paragraph"
Translate notes
files.CreateFolder folder & "\out"
target = folder & "\out\mine.txt"
Check "text rebuilt", wizard.CreateTranslation(notes, target, 0, 0), 0
Check "target kept", target, folder & "\out\mine.txt"
Check "text", ReadFile(target), "Bonjour" & vbCrLf

' Failures.
target = "unchanged"
Check "no document", wizard.CreateTranslation(folder & "\missing.tud", target, 0, 0), 1
Check "its text", wizard.LastError, "Failed to open TUD file"
Check "target after a failure", target, "unchanged"
files.DeleteFile notes & ".skl"
Check "no skeleton", wizard.CreateTranslation(notes, target, 0, 0), 3
Check "its text", wizard.LastError, "Failed to locate SKL file"
Check "file list after a failure", wizard.GetFileCount, 0
files.CreateFolder folder & "\taken"
WriteFile names(0) & ".skl", "no skeleton"
target = ""
Check "damaged skeleton", wizard.CreateTranslation(names(0), target, 0, 0), 3
Check "its text, too", wizard.LastError, "Failed to locate SKL file"
Check "the old page is there", ReadFile(folder & "\index_FR.asp") <> "", True

WScript.Echo checks & " checks"
WScript.Echo "done"
