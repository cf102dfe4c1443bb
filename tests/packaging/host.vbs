' A host of the installed library. Arguments: an empty folder; optionally a file: the host keeps its object until it is there.
Option Explicit
Dim files, folder, wizard, stream, waited
Set files = CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
Set wizard = CreateObject("K19FPW.K19FPWObj")
Set stream = files.CreateTextFile(folder & "\page.asp", True)
stream.Write "<html><body><p>Hello</p><% x = 1 %></body></html>" & vbCrLf
stream.Close
If wizard.PreProcess(folder & "\page.asp") = 0 And wizard.GetFileCount = 2 Then
  WScript.Echo "prepared"
Else
  WScript.Echo "FAILED: " & wizard.LastError
End If
If WScript.Arguments.Count > 1 Then
  Set stream = files.CreateTextFile(WScript.Arguments(1) & ".holds", True)
  stream.Close
  Do Until files.FileExists(WScript.Arguments(1)) Or waited > 600
    WScript.Sleep 100
    waited = waited + 1
  Loop
End If
