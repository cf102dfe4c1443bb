Attribute VB_Name = "KavoWorkbook"
' The macros of "kavo.xls": the texts of the active workbook to XML and back.
Option Explicit

Private Mode As Long
Private Xml As Object
Private Output As String
Private Seen As Long
Private OptionOrder As String, OptionHidden As String, OptionFormulas As String, OptionUngroup As String
Private OptionTolerance As Long

Public Sub ExportWorkbook()
  Dim Book As Workbook
  Set Book = ActiveWorkbook
  On Error GoTo Failed
  OptionOrder = GetSetting("KAVO", "Excel", "Order", "0")
  OptionHidden = GetSetting("KAVO", "Excel", "Hidden", "1")
  OptionFormulas = GetSetting("KAVO", "Excel", "Formulas", "1")
  OptionUngroup = GetSetting("KAVO", "Excel", "Ungroup", "0")
  OptionTolerance = CLng(GetSetting("KAVO", "Excel", "Tolerance", "255"))
  Mode = KavoExport
  Output = "<?xml version=""1.0"" encoding=""UTF-8""?>" & vbLf & "<kavo-office version=""1"" kind=""workbook"" order=""" & _
    OptionOrder & """ hidden=""" & OptionHidden & """ formulas=""" & OptionFormulas & """ ungroup=""" & OptionUngroup & _
    """ tolerance=""" & OptionTolerance & """ xml:space=""preserve"">" & vbLf
  WalkBook Book
  WriteXml XmlNameOf(Book.FullName), Output & "</kavo-office>" & vbLf
  DeleteFlag Book.FullName
  Exit Sub
Failed:
  GiveUp Book
End Sub

Public Sub ImportWorkbook()
  Dim Book As Workbook
  Set Book = ActiveWorkbook
  On Error GoTo Failed
  Set Xml = ReadXml(XmlNameOf(Book.FullName), "workbook")
  With Xml.documentElement
    OptionOrder = .getAttribute("order")
    OptionHidden = .getAttribute("hidden")
    OptionFormulas = "0"
    OptionUngroup = .getAttribute("ungroup")
    OptionTolerance = CLng(.getAttribute("tolerance"))
  End With
  ' Everything is compared before anything is changed: who called saves the workbook whatever becomes of this.
  Mode = KavoVerify
  Seen = 0
  WalkBook Book
  If Seen <> Xml.documentElement.selectNodes("seg").Length Then _
    Err.Raise 1004, , "The workbook has changed since its texts were exported"
  Mode = KavoImport
  WalkBook Book
  DeleteFlag Book.FullName
  Exit Sub
Failed:
  GiveUp Book
End Sub

Private Sub GiveUp(Book As Workbook)
  Dim Number As Long, Description As String
  Number = Err.Number
  Description = Err.Description
  DeleteFlag Book.FullName
  Err.Raise Number, "KAVO", Description
End Sub

Private Sub WalkBook(Book As Workbook)
  Dim i As Long
  For i = 1 To Book.Worksheets.Count
    If OptionHidden = "1" Or Book.Worksheets(i).Visible = xlSheetVisible Then WalkSheet Book.Worksheets(i), "sheet:" & i
  Next
End Sub

Private Sub WalkSheet(Sheet As Worksheet, ByVal Place As String)
  Dim i As Long
  WalkCells Sheet, Place
  For i = 1 To Sheet.Comments.Count
    WalkComment Sheet.Comments(i), Place
  Next
  WalkShapes Sheet, Place
  With Sheet.PageSetup
    .LeftHeader = Plain(Place & "/header/left", .LeftHeader)
    .CenterHeader = Plain(Place & "/header/center", .CenterHeader)
    .RightHeader = Plain(Place & "/header/right", .RightHeader)
    .LeftFooter = Plain(Place & "/footer/left", .LeftFooter)
    .CenterFooter = Plain(Place & "/footer/center", .CenterFooter)
    .RightFooter = Plain(Place & "/footer/right", .RightFooter)
  End With
  Dim NewName As String
  NewName = Plain(Place & "/name", Sheet.Name)
  If NewName <> Sheet.Name Then Sheet.Name = NewName
End Sub

' Along the rows (order 0) or columns (order 1). A line ends behind more blank cells than the tolerance allows.
Private Sub WalkCells(Sheet As Worksheet, ByVal Place As String)
  Dim Line As Long, Position As Long, Lines As Long, Positions As Long, Blanks As Long, Cell As Range
  With Sheet.UsedRange
    Lines = .Row + .Rows.Count - 1
    Positions = .Column + .Columns.Count - 1
  End With
  If OptionOrder = "1" Then
    Line = Lines
    Lines = Positions
    Positions = Line
  End If
  For Line = 1 To Lines
    Blanks = 0
    For Position = 1 To Positions
      If OptionOrder = "1" Then Set Cell = Sheet.Cells(Position, Line) Else Set Cell = Sheet.Cells(Line, Position)
      If IsEmpty(Cell.Value) Then
        Blanks = Blanks + 1
        If Blanks > OptionTolerance Then Exit For
      Else
        Blanks = 0
        If OptionHidden = "1" Or Not (Cell.EntireRow.Hidden Or Cell.EntireColumn.Hidden) Then _
          WalkCell Cell, Place & "/cell:" & Cell.Address(False, False)
      End If
    Next
  Next
End Sub

Private Sub WalkCell(Cell As Range, ByVal Place As String)
  Dim Starts() As Long, Count As Long, Runs() As String, i As Long, Segment As Object
  If Cell.HasFormula Then
    If OptionFormulas = "1" And Mode = KavoExport Then _
      Output = Output & "<formula place=""" & Place & """>" & Escaped(Cell.Formula) & "</formula>" & vbLf
    Exit Sub
  End If
  If VarType(Cell.Value) <> vbString Then Exit Sub
  If IsBlank(Cell.Value) Then Exit Sub
  Count = RunStarts(Cell, Starts)
  ReDim Runs(0 To Count - 1)
  For i = 0 To Count - 1
    Runs(i) = Mid$(Cell.Value, Starts(i), Starts(i + 1) - Starts(i))
  Next
  If Mode = KavoExport Then
    Output = Output & SegmentOf(Place, Runs)
    Exit Sub
  End If
  Set Segment = SegmentAt(Xml, Place, Cell.Value)
  Seen = Seen + 1
  If Mode = KavoImport Then WriteCell Cell, Segment
End Sub

' Where the runs of a cell begin, from 1, and one more for the end. Returns their number.
Private Function RunStarts(Cell As Range, Starts() As Long) As Long
  Dim i As Long, Count As Long, Last As String, Now As String
  ReDim Starts(0 To Len(Cell.Value) + 1)
  Starts(0) = 1
  Count = 1
  If IsMixed(Cell.Font) Then
    Last = Look(Cell.Characters(1, 1).Font)
    For i = 2 To Len(Cell.Value)
      Now = Look(Cell.Characters(i, 1).Font)
      If Now <> Last Then
        Starts(Count) = i
        Count = Count + 1
        Last = Now
      End If
    Next
  End If
  Starts(Count) = Len(Cell.Value) + 1
  RunStarts = Count
End Function

Private Function IsMixed(TheFont As Font) As Boolean
  With TheFont
    IsMixed = IsNull(.Bold) Or IsNull(.Italic) Or IsNull(.Underline) Or IsNull(.Strikethrough) Or IsNull(.Superscript) _
      Or IsNull(.Subscript) Or IsNull(.Color) Or IsNull(.Size) Or IsNull(.Name)
  End With
End Function

Private Function Look(TheFont As Font) As String
  With TheFont
    Look = Join(Array(.Bold, .Italic, .Underline, .Strikethrough, .Superscript, .Subscript, .Color, .Size, .Name), "|")
  End With
End Function

Private Sub WriteCell(Cell As Range, Segment As Object)
  Dim Pieces() As String, RunOf() As Long, Count As Long, i As Long, Text As String, At As Long
  Dim Lengths() As String, Looks() As String, Parts() As String
  Count = PiecesOf(Segment, Pieces, RunOf)
  Lengths = Split(Segment.getAttribute("runs"), " ")
  ReDim Looks(0 To UBound(Lengths))
  At = 1
  For i = 0 To UBound(Lengths)
    Looks(i) = Look(Cell.Characters(At, 1).Font)
    At = At + CLng(Lengths(i))
  Next
  For i = 0 To Count - 1
    Text = Text & Pieces(i)
  Next
  If Text = Cell.Value Then Exit Sub
  ' A text that looks like a number or a formula stays a text.
  If IsNumeric(Text) Or Left$(Text, 1) = "=" Then Cell.Value = "'" & Text Else Cell.Value = Text
  If UBound(Lengths) = 0 Then Exit Sub
  At = 1
  For i = 0 To Count - 1
    Parts = Split(Looks(RunOf(i) - 1), "|")
    If Len(Pieces(i)) > 0 Then
      With Cell.Characters(At, Len(Pieces(i))).Font
        .Name = Parts(8)
        .Size = CDbl(Parts(7))
        .Bold = CBool(Parts(0))
        .Italic = CBool(Parts(1))
        .Underline = CLng(Parts(2))
        .Strikethrough = CBool(Parts(3))
        .Superscript = CBool(Parts(4))
        .Subscript = CBool(Parts(5))
        .Color = CLng(Parts(6))
      End With
    End If
    At = At + Len(Pieces(i))
  Next
End Sub

Private Sub WalkComment(Note As Comment, ByVal Place As String)
  Dim Text As String
  Text = Plain(Place & "/cell:" & Note.Parent.Address(False, False) & "/comment", Note.Text)
  If Text <> Note.Text Then Note.Text Text
End Sub

Private Sub WalkShapes(Sheet As Worksheet, ByVal Place As String)
  Dim i As Long, Found As Boolean
  If OptionUngroup = "1" Then
    Do
      Found = False
      For i = 1 To Sheet.Shapes.Count
        If Sheet.Shapes(i).Type = 6 Then
          Sheet.Shapes(i).Ungroup
          Found = True
          Exit For
        End If
      Next
    Loop While Found
  End If
  For i = 1 To Sheet.Shapes.Count
    WalkShape Sheet.Shapes(i), Place & "/shape:" & i
  Next
End Sub

Private Sub WalkShape(TheShape As Shape, ByVal Place As String)
  Dim i As Long, Text As String, NewText As String
  If TheShape.Type = 4 Then Exit Sub ' of a comment, which has its own place
  If TheShape.Type = 6 Then
    For i = 1 To TheShape.GroupItems.Count
      WalkShape TheShape.GroupItems(i), Place & "." & i
    Next
    Exit Sub
  End If
  On Error Resume Next ' many shapes have no text at all
  Text = TheShape.TextFrame.Characters.Text
  If Err.Number <> 0 Then Exit Sub
  On Error GoTo 0
  NewText = Plain(Place & "/paragraph:1", Text)
  If NewText <> Text Then TheShape.TextFrame.Characters.Text = NewText
End Sub

' A text without formatting: written, compared, or answered with its translation.
Private Function Plain(ByVal Place As String, ByVal Text As String) As String
  Dim Segment As Object, Pieces() As String, RunOf() As Long, Count As Long, i As Long, NewText As String
  Plain = Text
  If IsBlank(Text) Then Exit Function
  If Mode = KavoExport Then
    Output = Output & SegmentOf(Place, Array(Text))
    Exit Function
  End If
  Set Segment = SegmentAt(Xml, Place, Text)
  Seen = Seen + 1
  If Mode = KavoVerify Then Exit Function
  Count = PiecesOf(Segment, Pieces, RunOf)
  For i = 0 To Count - 1
    NewText = NewText & Pieces(i)
  Next
  Plain = NewText
End Function
