Attribute VB_Name = "KavoPrepare"
' Prepares a server page, makes bilingual documents of it and rebuilds it. Import the module (File, Import File) and run
' PreparePage "C:\shop\index.asp" from the Immediate window.
' Tested: compiled by LibreOffice's Basic, its members compared with the interface (cli_hosts). It has never been run.
Option Explicit

Public Sub PreparePage(ByVal page As String)
  Dim wizard As Object, catalogue As Object
  Dim result As Long, index As Long, preview As Long, highlight As Long
  Dim produced As String, document As String, first As String, target As String, extension As String

  Set wizard = CreateObject("K19FPW.K19FPWObj")
  wizard.QuietMode = 1 ' no message boxes: results say what failed
  result = wizard.PreProcess(page)
  If result <> 0 Then Err.Raise vbObjectError + 1, , "not prepared, result " & result

  ' The reference suite's filters; a suite of your own has its own.
  Set catalogue = CreateObject("K19Suite.FilterCatalogue")
  For index = 0 To wizard.GetFileCount - 1
    produced = wizard.GetFile(index)
    extension = Mid$(produced, InStrRev(produced, ".") + 1)
    document = Left$(produced, Len(produced) - Len(extension) - 1) & "_" & extension & "_FR.tud"
    If index = 0 Then first = document
    catalogue.Convert produced, document, "", "EN-US", 0, "FR", 0, IIf(LCase$(extension) = "htm", "K19HTM", "K19TXT"), _
      "Paragraph"
    Debug.Print document
  Next

  ' Here the documents are translated. Then the first one brings the whole page back.
  result = wizard.CreateTranslation(first, target, preview, highlight)
  If result <> 0 Then Err.Raise vbObjectError + 2, , "not rebuilt: " & wizard.LastError
  Debug.Print target
End Sub
