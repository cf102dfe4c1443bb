' Prepares a server page, makes bilingual documents of it and rebuilds it:  cscript prepare.vbs C:\shop\index.asp
' Tested: run by the system's script host under Wine (script_prepare.vbs).
Option Explicit
Dim files, page, wizard, catalogue, result, index, produced, document, first, target
Set files = CreateObject("Scripting.FileSystemObject")
page = files.GetAbsolutePathName(WScript.Arguments(0))

Set wizard = CreateObject("K19FPW.K19FPWObj")
wizard.QuietMode = 1 ' no message boxes: results say what failed
result = wizard.PreProcess(page)
If result <> 0 Then
  WScript.Echo "not prepared, result " & result
  WScript.Quit 1
End If

' The reference suite's filters; a suite of your own has its own.
Set catalogue = CreateObject("K19Suite.FilterCatalogue")
For index = 0 To wizard.GetFileCount - 1
  produced = wizard.GetFile(index)
  document = files.GetParentFolderName(produced) & "\" & files.GetBaseName(produced) & "_" & _
    files.GetExtensionName(produced) & "_FR.tud"
  If index = 0 Then first = document
  catalogue.Convert produced, document, "", "EN-US", 0, "FR", 0, FilterOf(produced), "Paragraph"
  WScript.Echo document
Next

' Here the documents are translated. Then the first one brings the whole page back.
target = ""
result = wizard.CreateTranslation(first, target, 0, 0)
If result <> 0 Then
  WScript.Echo "not rebuilt: " & wizard.LastError
  WScript.Quit 1
End If
WScript.Echo target
WScript.Echo "done"

Function FilterOf(name)
  If LCase(files.GetExtensionName(name)) = "htm" Then FilterOf = "K19HTM" Else FilterOf = "K19TXT"
End Function
