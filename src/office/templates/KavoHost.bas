Attribute VB_Name = "KavoHost"
' What the macros need of Windows: files of any name, which the statements of the language cannot reach beyond the
' system's code page, the reader of XML, the user's settings. What other hosts of the language do not have is here too,
' so that all other modules run in them as they are.
Option Explicit

Public Function IsFile(ByVal FileName As String) As Boolean
  IsFile = CreateObject("Scripting.FileSystemObject").FileExists(FileName)
End Function

Public Sub RemoveFile(ByVal FileName As String)
  If IsFile(FileName) Then CreateObject("Scripting.FileSystemObject").DeleteFile FileName, True
End Sub

' UTF-8 without a mark, under its name only when it is complete.
Public Sub WriteFile(ByVal FileName As String, ByVal Text As String)
  Dim Writer As Object, Bytes As Object
  Set Writer = CreateObject("ADODB.Stream")
  Writer.Type = 2
  Writer.Charset = "utf-8"
  Writer.Open
  Writer.WriteText Text
  Writer.Position = 0
  Writer.Type = 1
  Writer.Position = 3
  Set Bytes = CreateObject("ADODB.Stream")
  Bytes.Type = 1
  Bytes.Open
  Writer.CopyTo Bytes
  Bytes.SaveToFile FileName & ".new", 2
  RemoveFile FileName
  CreateObject("Scripting.FileSystemObject").MoveFile FileName & ".new", FileName
End Sub

' The document object of an XML file, its white space kept.
Public Function LoadXml(ByVal FileName As String) As Object
  Dim Xml As Object
  Set Xml = CreateObject("MSXML2.DOMDocument")
  Xml.async = False
  Xml.preserveWhiteSpace = True
  If Not Xml.Load(FileName) Then Err.Raise 1004, "KAVO", FileName & ": " & Xml.parseError.reason
  Set LoadXml = Xml
End Function

Public Function UserSetting(ByVal Key As String, ByVal Otherwise As String) As String
  UserSetting = GetSetting("KAVO", "Excel", Key, Otherwise)
End Function

' Where a comment of a sheet stands, such as "B2".
Public Function CommentCell(Sheet As Object, ByVal Number As Long) As String
  CommentCell = Sheet.Comments(Number).Parent.Address(False, False)
End Function

' Whether a shape only shows a comment.
Public Function IsCommentShape(Sheet As Object, ByVal Number As Long) As Boolean
  IsCommentShape = Sheet.Shapes(Number).Type = 4
End Function

' Nothing when a chart does not have that axis.
Public Function ChartAxis(TheChart As Object, ByVal Kind As Long, ByVal Group As Long) As Object
  On Error Resume Next ' not every kind of chart knows every axis
  If TheChart.HasAxis(Kind, Group) Then Set ChartAxis = TheChart.Axes(Kind, Group)
End Function

' The name of a cell's style; nothing for the usual one.
Public Function StyleOf(Cell As Object) As String
  StyleOf = Cell.Style.Name
  If StyleOf = "Normal" Then StyleOf = ""
End Function

' Whether a cell's characters look different, so that they are worth being looked at one by one.
Public Function IsMixed(Cell As Object) As Boolean
  With Cell.Font
    IsMixed = IsNull(.Bold) Or IsNull(.Italic) Or IsNull(.Underline) Or IsNull(.Strikethrough) Or IsNull(.Superscript) _
      Or IsNull(.Subscript) Or IsNull(.Color) Or IsNull(.Size) Or IsNull(.Name)
  End With
End Function
