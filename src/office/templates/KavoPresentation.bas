Attribute VB_Name = "KavoPresentation"
' The macros of "kavo.ppt": the texts of a presentation to XML and back.
Option Explicit

Private Mode As Long
Private Segments As Collection
Private Written As String
Private Seen As Long

Public Sub ExportPresentation()
  Dim Deck As Presentation
  Set Deck = OpenDeck()
  On Error GoTo Failed
  Mode = KavoExport
  Written = "<?xml version=""1.0"" encoding=""UTF-8""?>" & vbLf & _
    "<kavo-office version=""1"" kind=""presentation"" xml:space=""preserve"">" & vbLf
  WalkDeck Deck
  WriteFile XmlNameOf(Deck.FullName), Written & "</kavo-office>" & vbLf
  DeleteFlag Deck.FullName
  Exit Sub
Failed:
  GiveUp Deck
End Sub

Public Sub ImportPresentation()
  Dim Deck As Presentation, Root As Object
  Set Deck = OpenDeck()
  On Error GoTo Failed
  ReadXml XmlNameOf(Deck.FullName), "presentation", Root, Segments
  ' Everything is compared before anything is changed: who called saves the presentation whatever becomes of this.
  Mode = KavoVerify
  Seen = 0
  WalkDeck Deck
  If Seen <> Segments.Count Then _
    Err.Raise 1004, , "The presentation has changed since its texts were exported"
  Mode = KavoImport
  WalkDeck Deck
  DeleteFlag Deck.FullName
  Exit Sub
Failed:
  GiveUp Deck
End Sub

' The one that the program waits for.
Private Function OpenDeck() As Presentation
  Dim i As Long, Flags As Long, Flagged As Long
  For i = 1 To Presentations.Count
    If HasFlag(Presentations(i).FullName) Then
      Flags = Flags + 1
      Flagged = i
    End If
  Next
  CheckFlags Flags
  Set OpenDeck = Presentations(Flagged)
End Function

Private Sub GiveUp(Deck As Presentation)
  Dim Number As Long, Description As String
  Number = Err.Number
  Description = Err.Description
  DeleteFlag Deck.FullName
  Err.Raise Number, "KAVO", Description
End Sub

Private Sub WalkDeck(Deck As Presentation)
  Dim i As Long, j As Long
  For i = 1 To Deck.Slides.Count
    WalkShapes Deck.Slides(i).Shapes, "slide:" & i
    WalkShapes Deck.Slides(i).NotesPage.Shapes, "slide:" & i & "/notes"
    ' Comments cannot be changed by a macro: they are not exported.
  Next
  For i = 1 To Deck.SlideMaster.Shapes.Count
    If Deck.SlideMaster.Shapes(i).Type <> 14 Then WalkShape Deck.SlideMaster.Shapes(i), "master:1/shape:" & i
  Next
End Sub

Private Sub WalkShapes(TheShapes As Object, ByVal Place As String)
  Dim i As Long
  For i = 1 To TheShapes.Count
    WalkShape TheShapes(i), Place & "/shape:" & i
  Next
End Sub

Private Sub WalkShape(TheShape As Object, ByVal Place As String)
  Dim i As Long, j As Long
  If TheShape.Type = 6 Then
    For i = 1 To TheShape.GroupItems.Count
      WalkShape TheShape.GroupItems(i), Place & "." & i
    Next
  ElseIf TheShape.Type = 19 Then
    If Mode = KavoExport Then Written = Written & PlaceOf(Place, TheShape.Name)
    For i = 1 To TheShape.Table.Rows.Count
      For j = 1 To TheShape.Table.Columns.Count
        WalkText TheShape.Table.Cell(i, j).Shape.TextFrame.TextRange, Place & "/cell:" & ColumnName(j) & i
      Next
    Next
  ElseIf TheShape.HasTextFrame Then
    If TheShape.TextFrame.HasText Then
      If Mode = KavoExport Then Written = Written & PlaceOf(Place, TheShape.Name)
      WalkText TheShape.TextFrame.TextRange, Place
    End If
  End If
End Sub

' A, B, ..., Z, AA, AB ... A table has at most 75 columns.
Public Function ColumnName(ByVal Column As Long) As String
  If Column > 26 Then ColumnName = Chr$(64 + (Column - 1) \ 26)
  ColumnName = ColumnName & Chr$(65 + (Column - 1) Mod 26)
End Function

Private Sub WalkText(Whole As Object, ByVal Place As String)
  Dim i As Long
  For i = 1 To Whole.Paragraphs.Count
    WalkParagraph Whole.Paragraphs(i), Place & "/paragraph:" & i
  Next
End Sub

' The end of a paragraph is no part of its text; a line break in it is Chr(11).
Private Function TextOf(TheRange As Object) As String
  TextOf = Replace(Replace(TheRange.Text, vbCr, ""), Chr$(11), vbLf)
End Function

Private Sub WalkParagraph(Paragraph As Object, ByVal Place As String)
  Dim Runs() As String, Count As Long, i As Long, Segment As Object
  If IsBlank(TextOf(Paragraph)) Then Exit Sub
  ReDim Runs(0 To Paragraph.Runs.Count)
  For i = 1 To Paragraph.Runs.Count
    If Len(TextOf(Paragraph.Runs(i))) > 0 Then
      Runs(Count) = TextOf(Paragraph.Runs(i))
      Count = Count + 1
    End If
  Next
  ReDim Preserve Runs(0 To Count - 1)
  If Mode = KavoExport Then
    Written = Written & SegmentOf(Place, "", Runs)
    Exit Sub
  End If
  Set Segment = SegmentAt(Segments, Place, TextOf(Paragraph))
  Seen = Seen + 1
  If Mode = KavoImport Then WriteParagraph Paragraph, Segment
End Sub

Private Sub WriteParagraph(Paragraph As Object, Segment As Object)
  Dim Pieces() As String, RunOf() As Long, Count As Long, i As Long, Text As String, At As Long, Lengths() As String
  Dim Looks() As String, Parts() As String
  Count = PiecesOf(Segment, Pieces, RunOf)
  For i = 0 To Count - 1
    Text = Text & Pieces(i)
  Next
  If Text = TextOf(Paragraph) Then Exit Sub
  Lengths = Split(Segment.getAttribute("runs"), " ")
  ReDim Looks(0 To UBound(Lengths))
  At = 1
  For i = 0 To UBound(Lengths)
    With Paragraph.Characters(At, 1).Font
      Looks(i) = Join(Array(.Bold, .Italic, .Underline, .Shadow, .BaselineOffset, .Color.RGB, .Size, .Name), "|")
    End With
    At = At + CLng(Lengths(i))
  Next
  Paragraph.Characters(1, Len(TextOf(Paragraph))).Text = Replace(Text, vbLf, Chr$(11))
  If UBound(Lengths) = 0 Then Exit Sub
  At = 1
  For i = 0 To Count - 1
    Parts = Split(Looks(RunOf(i) - 1), "|")
    If Len(Pieces(i)) > 0 Then
      With Paragraph.Characters(At, Len(Pieces(i))).Font
        .Name = Parts(7)
        .Size = CSng(Parts(6))
        .Bold = CLng(Parts(0))
        .Italic = CLng(Parts(1))
        .Underline = CLng(Parts(2))
        .Shadow = CLng(Parts(3))
        .BaselineOffset = CSng(Parts(4))
        .Color.RGB = CLng(Parts(5))
      End With
    End If
    At = At + Len(Pieces(i))
  Next
End Sub
