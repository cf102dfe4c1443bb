Attribute VB_Name = "KavoWorkbook"
' The macros of "kavo.xls": the texts of a workbook to XML and back.
Option Explicit

Private Const kGroupShape = 6

Private Mode As Long
Private Segments As Collection
Private Written As String
Private Seen As Long
Private OptionOrder As String, OptionHidden As String, OptionFormulas As String, OptionUngroup As String
Private OptionTolerance As Long

Public Sub ExportWorkbook()
  Dim Book As Workbook
  Set Book = OpenBook()
  On Error GoTo Failed
  OptionOrder = UserSetting("Order", "0")
  OptionHidden = UserSetting("Hidden", "1")
  OptionFormulas = UserSetting("Formulas", "1")
  OptionUngroup = UserSetting("Ungroup", "0")
  OptionTolerance = CLng(UserSetting("Tolerance", "255"))
  Mode = KavoExport
  Written = "<?xml version=""1.0"" encoding=""UTF-8""?>" & vbLf & "<kavo-office version=""1"" kind=""workbook"" order=""" & _
    OptionOrder & """ hidden=""" & OptionHidden & """ formulas=""" & OptionFormulas & """ ungroup=""" & OptionUngroup & _
    """ tolerance=""" & OptionTolerance & """ xml:space=""preserve"">" & vbLf
  WalkBook Book
  WriteFile XmlNameOf(FileOf(Book)), Written & "</kavo-office>" & vbLf
  DeleteFlag FileOf(Book)
  Exit Sub
Failed:
  GiveUp Book
End Sub

Public Sub ImportWorkbook()
  Dim Book As Workbook, Root As Object
  Set Book = OpenBook()
  On Error GoTo Failed
  ReadXml XmlNameOf(FileOf(Book)), "workbook", Root, Segments
  With Root
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
  If Seen <> Segments.Count Then _
    Err.Raise 1004, , "The workbook has changed since its texts were exported"
  Mode = KavoImport
  WalkBook Book
  DeleteFlag FileOf(Book)
  Exit Sub
Failed:
  GiveUp Book
End Sub

' The one that the program waits for.
Private Function OpenBook() As Workbook
  Dim i As Long, Flags As Long, Flagged As Long
  For i = 1 To Workbooks.Count
    If HasFlag(FileOf(Workbooks(i))) Then
      Flags = Flags + 1
      Flagged = i
    End If
  Next
  CheckFlags Flags
  Set OpenBook = Workbooks(Flagged)
End Function

Private Function FileOf(Book As Workbook) As String
  FileOf = Book.Path & Application.PathSeparator & Book.Name
End Function

Private Sub GiveUp(Book As Workbook)
  Dim Number As Long, Description As String
  Number = Err.Number
  Description = Err.Description
  DeleteFlag FileOf(Book)
  Err.Raise Number, "KAVO", Description
End Sub

Private Sub WalkBook(Book As Workbook)
  Dim i As Long
  For i = 1 To Book.Sheets.Count
    If OptionHidden = "1" Or Book.Sheets(i).Visible = xlSheetVisible Then WalkSheet Book.Sheets(i), "sheet:" & i
  Next
End Sub

Private Sub WalkSheet(Sheet As Object, ByVal Place As String)
  Dim i As Long, NewName As String
  If Mode = KavoExport Then Written = Written & PlaceOf(Place, Sheet.Name)
  If TypeName(Sheet) = "Worksheet" Then
    WalkCells Sheet, Place
    For i = 1 To Sheet.Comments.Count
      WalkComment Sheet, i, Place
    Next
    WalkShapes Sheet, Place
    For i = 1 To Sheet.ChartObjects.Count
      WalkChart Sheet.ChartObjects(i).Chart, Place & "/chart:" & i
    Next
  Else
    WalkChart Sheet, Place & "/chart:1"
  End If
  WalkHeaders Sheet.PageSetup, Place
  ' Last, so that a new name is in nobody's way.
  NewName = Plain(Place & "/name", Sheet.Name)
  If NewName <> Sheet.Name Then Sheet.Name = NewName
End Sub

Private Sub WalkHeaders(Page As Object, ByVal Place As String)
  Dim Text As String
  With Page
    Text = Plain(Place & "/header/left", .LeftHeader)
    If Text <> .LeftHeader Then .LeftHeader = Text
    Text = Plain(Place & "/header/center", .CenterHeader)
    If Text <> .CenterHeader Then .CenterHeader = Text
    Text = Plain(Place & "/header/right", .RightHeader)
    If Text <> .RightHeader Then .RightHeader = Text
    Text = Plain(Place & "/footer/left", .LeftFooter)
    If Text <> .LeftFooter Then .LeftFooter = Text
    Text = Plain(Place & "/footer/center", .CenterFooter)
    If Text <> .CenterFooter Then .CenterFooter = Text
    Text = Plain(Place & "/footer/right", .RightFooter)
    If Text <> .RightFooter Then .RightFooter = Text
  End With
End Sub

' Along the rows (order 0) or the columns (order 1). A row ends, in either order, behind more blank cells in succession
' than the tolerance allows.
Private Sub WalkCells(Sheet As Object, ByVal Place As String)
  Dim Values As Variant, Ends() As Long, Rows As Long, Columns As Long, i As Long, j As Long, LeftOut As Long
  Rows = Sheet.UsedRange.Row + Sheet.UsedRange.Rows.Count - 1
  Columns = Sheet.UsedRange.Column + Sheet.UsedRange.Columns.Count - 1
  ' One column more: the value of a single cell is no array.
  Values = Sheet.Range(Sheet.Cells(1, 1), Sheet.Cells(Rows, Columns + 1)).Value
  ReDim Ends(1 To Rows)
  For i = 1 To Rows
    Ends(i) = EndOfRow(Values, i, Columns)
    For j = Ends(i) + 1 To Columns
      If VarType(Values(i, j)) = vbString Then
        If Not IsBlank(Values(i, j)) And Not Sheet.Cells(i, j).HasFormula Then
          If IsShown(Sheet.Cells(i, j)) Then LeftOut = LeftOut + 1
        End If
      End If
    Next
  Next
  If OptionOrder = "1" Then
    For j = 1 To Columns
      For i = 1 To Rows
        If j <= Ends(i) And Not IsEmpty(Values(i, j)) Then WalkCell Sheet.Cells(i, j), Place
      Next
    Next
  Else
    For i = 1 To Rows
      For j = 1 To Ends(i)
        If Not IsEmpty(Values(i, j)) Then WalkCell Sheet.Cells(i, j), Place
      Next
    Next
  End If
  If LeftOut > 0 And Mode = KavoExport Then _
    Written = Written & "<left-out place=""" & Place & """ texts=""" & LeftOut & """/>" & vbLf
End Sub

Private Function EndOfRow(Values As Variant, ByVal Row As Long, ByVal Columns As Long) As Long
  Dim j As Long, Last As Long
  For j = 1 To Columns
    If Not IsEmpty(Values(Row, j)) Then
      If j - Last - 1 > OptionTolerance Then Exit For
      Last = j
    End If
  Next
  EndOfRow = Last
End Function

Private Function IsShown(Cell As Range) As Boolean
  IsShown = OptionHidden = "1"
  If Not IsShown Then IsShown = Not (Cell.EntireRow.Hidden Or Cell.EntireColumn.Hidden)
End Function

Private Sub WalkCell(Cell As Range, ByVal SheetPlace As String)
  Dim Place As String, Starts() As Long, Count As Long, Runs() As String, i As Long, Segment As Object
  If Not IsShown(Cell) Then Exit Sub
  Place = SheetPlace & "/cell:" & Cell.Address(False, False)
  If Cell.HasFormula Then
    If OptionFormulas = "1" And Mode = KavoExport Then _
      Written = Written & "<formula place=""" & Place & """>" & Escaped(Cell.Formula) & "</formula>" & vbLf
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
    Written = Written & SegmentOf(Place, StyleOf(Cell), Runs)
    Exit Sub
  End If
  Set Segment = SegmentAt(Segments, Place, Cell.Value)
  Seen = Seen + 1
  If Mode = KavoImport Then WriteCell Cell, Segment
End Sub

' Where the runs of a cell begin, from 1, and one more for the end. Returns their number.
Private Function RunStarts(Cell As Range, Starts() As Long) As Long
  Dim i As Long, Count As Long, Last As String, Now As String
  ReDim Starts(0 To Len(Cell.Value) + 1)
  Starts(0) = 1
  Count = 1
  If IsMixed(Cell) Then
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

Private Sub WalkComment(Sheet As Object, ByVal Number As Long, ByVal Place As String)
  Dim Text As String
  With Sheet.Comments(Number)
    Text = Plain(Place & "/cell:" & CommentCell(Sheet, Number) & "/comment", .Text)
    If Text <> .Text Then .Text Text
  End With
End Sub

Private Sub WalkChart(TheChart As Object, ByVal Place As String)
  Dim Text As String
  If TheChart.HasTitle Then
    Text = Plain(Place & "/title", TheChart.ChartTitle.Text)
    If Text <> TheChart.ChartTitle.Text Then TheChart.ChartTitle.Text = Text
  End If
  WalkAxis TheChart, xlCategory, xlPrimary, Place & "/axis:x"
  WalkAxis TheChart, xlValue, xlPrimary, Place & "/axis:y"
  WalkAxis TheChart, xlSeriesAxis, xlPrimary, Place & "/axis:z"
  WalkAxis TheChart, xlCategory, xlSecondary, Place & "/axis:x2"
  WalkAxis TheChart, xlValue, xlSecondary, Place & "/axis:y2"
End Sub

Private Sub WalkAxis(TheChart As Object, ByVal Kind As Long, ByVal Group As Long, ByVal Place As String)
  Dim Axis As Object, Text As String
  Set Axis = ChartAxis(TheChart, Kind, Group)
  If Axis Is Nothing Then Exit Sub
  If Not Axis.HasTitle Then Exit Sub
  Text = Plain(Place & "/title", Axis.AxisTitle.Text)
  If Text <> Axis.AxisTitle.Text Then Axis.AxisTitle.Text = Text
End Sub

' Shapes are counted without those that show a comment, which has its own place.
Private Sub WalkShapes(Sheet As Object, ByVal Place As String)
  Dim i As Long, Number As Long
  If OptionUngroup = "1" Then UngroupAll Sheet
  For i = 1 To Sheet.Shapes.Count
    If Not IsCommentShape(Sheet, i) Then
      Number = Number + 1
      WalkShape Sheet.Shapes(i), Place & "/shape:" & Number
    End If
  Next
End Sub

' Until no group is left: a group may hold others.
Private Sub UngroupAll(Sheet As Object)
  Dim i As Long, Found As Boolean
  Do
    Found = False
    For i = 1 To Sheet.Shapes.Count
      If IsCommentShape(Sheet, i) Then
        ' goes with its comment
      ElseIf Sheet.Shapes(i).Type = kGroupShape Then
        Sheet.Shapes(i).Ungroup
        Found = True
        Exit For
      End If
    Next
  Loop While Found
End Sub

Private Sub WalkShape(TheShape As Object, ByVal Place As String)
  Dim i As Long
  If TheShape.Type = kGroupShape Then
    For i = 1 To TheShape.GroupItems.Count
      WalkShapeText TheShape.GroupItems(i), Place & "." & i
    Next
  Else
    WalkShapeText TheShape, Place
  End If
End Sub

Private Sub WalkShapeText(TheShape As Object, ByVal Place As String)
  Dim Text As String, Before() As String, After() As String, i As Long, At As Long
  On Error Resume Next ' many shapes have no text at all
  Text = TheShape.TextFrame.Characters.Text
  On Error GoTo 0
  If IsBlank(Text) Then Exit Sub
  If Mode = KavoExport Then Written = Written & PlaceOf(Place, TheShape.Name)
  Before = Split(Text, vbLf)
  After = Split(Text, vbLf)
  For i = 0 To UBound(Before)
    After(i) = Plain(Place & "/paragraph:" & (i + 1), Before(i))
  Next
  ' From the last to the first, so that what stands before keeps its place and its formatting.
  At = Len(Text) + 1
  For i = UBound(Before) To 0 Step -1
    At = At - Len(Before(i))
    If After(i) <> Before(i) Then
      If UBound(Before) = 0 Then
        TheShape.TextFrame.Characters.Text = After(i)
      Else
        TheShape.TextFrame.Characters(At, Len(Before(i))).Text = After(i)
      End If
    End If
    At = At - 1
  Next
End Sub

' A text without formatting: written, compared, or answered with its translation.
Private Function Plain(ByVal Place As String, ByVal Text As String) As String
  Dim Segment As Object, Pieces() As String, RunOf() As Long, Count As Long, i As Long, NewText As String
  Plain = Text
  If IsBlank(Text) Then Exit Function
  If Mode = KavoExport Then
    Written = Written & SegmentOf(Place, "", Array(Text))
    Exit Function
  End If
  Set Segment = SegmentAt(Segments, Place, Text)
  Seen = Seen + 1
  If Mode = KavoVerify Then Exit Function
  Count = PiecesOf(Segment, Pieces, RunOf)
  For i = 0 To Count - 1
    NewText = NewText & Pieces(i)
  Next
  Plain = NewText
End Function
