Attribute VB_Name = "KavoXml"
' What the macros of both templates share: the XML of the texts and the files around a document.
' The layout is the one that docs/office-xml.md describes.
Option Explicit

Public Const KavoExport = 0
Public Const KavoVerify = 1
Public Const KavoImport = 2

Private Const kPrime = 65521

' "C:\a\deck.ppt" to "C:\a\deck_ppt.xml".
Public Function XmlNameOf(ByVal DocumentName As String) As String
  Dim Dot As Long
  Dot = InStrRev(DocumentName, ".")
  XmlNameOf = Left$(DocumentName, Dot - 1) & "_" & Mid$(DocumentName, Dot + 1) & ".xml"
End Function

' The file that the program makes before it runs a macro, and waits for to go.
Private Function FlagOf(ByVal DocumentName As String) As String
  FlagOf = DocumentName & ".kavo"
End Function

Public Function HasFlag(ByVal DocumentName As String) As Boolean
  HasFlag = IsFile(FlagOf(DocumentName))
End Function

' Fails unless just one of the open documents has a flag file. Without one the program could not open its document, and
' every document here is the user's own; of two, one was left behind beside a document that the user has opened.
Public Sub CheckFlags(ByVal Count As Long)
  If Count = 0 Then _
    Err.Raise 1004, "KAVO", "No open document has a flag file: only the program can start this macro"
  If Count > 1 Then _
    Err.Raise 1004, "KAVO", "More than one open document has a flag file (.kavo): close those that you opened yourself"
End Sub

' Tells the program that waits that the macro has finished.
Public Sub DeleteFlag(ByVal DocumentName As String)
  On Error Resume Next
  RemoveFile FlagOf(DocumentName)
End Sub

Public Function CheckOf(ByVal Text As String) As String
  Dim Low As Long, High As Long, i As Long
  Low = 1
  For i = 1 To Len(Text)
    Low = (Low + (AscW(Mid$(Text, i, 1)) And &HFFFF&)) Mod kPrime
    High = (High + Low) Mod kPrime
  Next
  CheckOf = LCase$(Right$("000" & Hex$(High), 4) & Right$("000" & Hex$(Low), 4))
End Function

Public Function IsBlank(ByVal Text As String) As Boolean
  IsBlank = Len(Trim$(Replace(Replace(Replace(Replace(Text, vbTab, ""), vbLf, ""), ChrW$(160), ""), ChrW$(&H3000), ""))) = 0
End Function

Public Function Escaped(ByVal Text As String) As String
  Dim i As Long
  Text = Replace(Replace(Replace(Replace(Text, "&", "&amp;"), "<", "&lt;"), ">", "&gt;"), """", "&quot;")
  Text = Replace(Replace(Text, vbTab, "&#9;"), vbLf, "<br/>")
  For i = 0 To 31
    If InStr(Text, ChrW$(i)) > 0 Then Text = Replace(Text, ChrW$(i), "<char code=""" & i & """/>")
  Next
  Escaped = Text
End Function

' What people call a place, for information only.
Public Function PlaceOf(ByVal Place As String, ByVal Name As String) As String
  If Len(Name) > 0 Then PlaceOf = "<place path=""" & Place & """ name=""" & Escaped(Name) & """/>" & vbLf
End Function

' One text. Runs is an array of strings from 0; Style is the name of its cell's style, or nothing.
Public Function SegmentOf(ByVal Place As String, ByVal Style As String, Runs As Variant) As String
  Dim Lengths As String, Content As String, Whole As String, i As Long
  For i = 0 To UBound(Runs)
    Lengths = Lengths & IIf(i > 0, " ", "") & Len(Runs(i))
    Whole = Whole & Runs(i)
    If UBound(Runs) = 0 Then
      Content = Escaped(Runs(i))
    Else
      Content = Content & "<g id=""" & (i + 1) & """>" & Escaped(Runs(i)) & "</g>"
    End If
  Next
  If Len(Style) > 0 Then Style = " style=""" & Escaped(Style) & """"
  SegmentOf = "<seg place=""" & Place & """ check=""" & CheckOf(Whole) & """ runs=""" & Lengths & """" & Style & ">" & _
    Content & "</seg>" & vbLf
End Function

' The XML of a document and its texts, by place. Fails when it is not that of such a document.
Public Sub ReadXml(ByVal FileName As String, ByVal Kind As String, Root As Object, Segments As Collection)
  Dim Node As Object, i As Long
  Set Root = LoadXml(FileName).documentElement
  If Root.nodeName <> "kavo-office" Or Root.getAttribute("version") <> "1" Or Root.getAttribute("kind") <> Kind Then _
    Err.Raise 1004, "KAVO", FileName & ": not the XML of such a document"
  Set Segments = New Collection
  For i = 0 To Root.childNodes.Length - 1
    Set Node = Root.childNodes.Item(i)
    If Node.nodeName = "seg" Then Segments.Add Node, Node.getAttribute("place")
  Next
End Sub

' The segment of a place; fails when the document's text is not the one that was exported.
Public Function SegmentAt(Segments As Collection, ByVal Place As String, ByVal Text As String) As Object
  Dim Segment As Object
  On Error Resume Next
  Set Segment = Segments.Item(Place)
  On Error GoTo 0
  If Segment Is Nothing Then RaiseChanged Place
  If Segment.getAttribute("check") <> CheckOf(Text) Then RaiseChanged Place
  Set SegmentAt = Segment
End Function

Public Sub RaiseChanged(ByVal Place As String)
  Err.Raise 1004, "KAVO", "The document has changed since its texts were exported, at " & Place & "; export it again"
End Sub

' The pieces of a translation in their order: Pieces(i) belongs to the run RunOf(i), from 1. Returns their number.
Public Function PiecesOf(Segment As Object, Pieces() As String, RunOf() As Long) As Long
  Dim Node As Object, Count As Long, Run As Long
  ReDim Pieces(0 To Segment.childNodes.Length)
  ReDim RunOf(0 To Segment.childNodes.Length)
  Run = 1
  For Count = 0 To Segment.childNodes.Length - 1
    Set Node = Segment.childNodes.Item(Count)
    If Node.nodeName = "g" Then Run = CLng(Node.getAttribute("id"))
    Pieces(Count) = ContentOf(Node)
    RunOf(Count) = Run
  Next
  PiecesOf = Count
End Function

Private Function ContentOf(Node As Object) As String
  Dim Content As String, i As Long
  Select Case Node.nodeName
    Case "#text"
      ContentOf = Replace(Node.nodeValue, vbLf, " ")
    Case "br"
      ContentOf = vbLf
    Case "char"
      ContentOf = ChrW$(CLng(Node.getAttribute("code")))
    Case Else
      For i = 0 To Node.childNodes.Length - 1
        Content = Content & ContentOf(Node.childNodes.Item(i))
      Next
      ContentOf = Content
  End Select
End Function
