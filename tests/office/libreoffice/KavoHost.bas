' What stands in for the module of the same name while the macros run in LibreOffice: files and XML through LibreOffice's
' own services in the place of those of Windows, and the user's settings, which its Basic does not know.
Option VBASupport 1
Option Explicit

Public Function IsFile(ByVal FileName As String) As Boolean
  IsFile = FileExists(FileName)
End Function

Public Sub RemoveFile(ByVal FileName As String)
  If FileExists(FileName) Then Kill FileName
End Sub

Public Sub WriteFile(ByVal FileName As String, ByVal Text As String)
  Dim Files As Object, Stream As Object
  RemoveFile FileName
  Files = CreateUnoService("com.sun.star.ucb.SimpleFileAccess")
  Stream = CreateUnoService("com.sun.star.io.TextOutputStream")
  Stream.setOutputStream(Files.openFileWrite(ConvertToURL(FileName)))
  Stream.setEncoding("UTF-8")
  Stream.writeString(Text)
  Stream.closeOutput()
End Sub

Public Function LoadXml(ByVal FileName As String) As Object
  LoadXml = CreateUnoService("com.sun.star.xml.dom.DocumentBuilder").parseURI(ConvertToURL(FileName))
End Function

' SETTINGS is replaced by those of the test: ";Order=1;Tolerance=5;".
Public Function UserSetting(ByVal Key As String, ByVal Otherwise As String) As String
  Dim Begin As Long
  Begin = InStr("SETTINGS", ";" & Key & "=")
  If Begin = 0 Then
    UserSetting = Otherwise
  Else
    Begin = Begin + Len(Key) + 2
    UserSetting = Mid("SETTINGS", Begin, InStr(Begin, "SETTINGS", ";") - Begin)
  End If
End Function

' A comment does not know its cell here: it is the one with the same comment.
Public Function CommentCell(Sheet As Object, ByVal Number As Long) As String
  Dim Cell As Object
  For Each Cell In Sheet.UsedRange
    If Not Cell.Comment Is Nothing Then
      If Cell.Comment.Text = Sheet.Comments(Number).Text Then CommentCell = Cell.Address(False, False)
    End If
  Next
End Function

' The shape that shows a comment is the only kind that has no type here.
Public Function IsCommentShape(Sheet As Object, ByVal Number As Long) As Boolean
  Dim Kind As Long
  On Error GoTo HasNoType
  Kind = Sheet.Shapes(Number).Type
  Exit Function
HasNoType:
  IsCommentShape = True
End Function

' Asked for an axis of the second group, the first is answered here.
Public Function ChartAxis(TheChart As Object, ByVal Kind As Long, ByVal Group As Long) As Object
  On Error Resume Next
  If Group = 1 Then Set ChartAxis = TheChart.Axes(Kind, Group)
End Function

' The usual style has another name here.
Public Function StyleOf(Cell As Object) As String
  StyleOf = Cell.Style.Name
  If StyleOf = "Default" Then StyleOf = ""
End Function

' Mixed fonts have the look of their first character here.
Public Function IsMixed(Cell As Object) As Boolean
  IsMixed = True
End Function
