"""The documents that the fault runs work on: each has everything its format keeps apart, in a few hundred bytes.

Every document comes in two editions. A run over existing results starts from those of the first edition and works on
the second, so that each file it replaces really changes and a mixture of both can be told from either.
"""
import re

lines = 0  # how many lines of text are added to each document, for runs that need larger ones


def _more(shape, edition):
    return "".join(shape.format(f"Line {number} of edition {edition}, which makes the document long.")
                   for number in range(lines))


def page(edition):
    """A server page: scripts of both kinds, accents, an attribute that a script makes."""
    more = '<%= total %> <p>Ça coûte très cher.</p>\n' if edition == 2 else ""
    return f"""<%@ Language="VBScript" %>
<html><head><meta charset="utf-8"><title>Café {edition}</title></head>
<body class=<%=kind{edition}%>>
<% greeting = "Hello {edition}" %>
<p>Héllo <%= name %>, edition {edition} of the <b>page</b>.</p>
{more}{_more("<p>{}</p>" + chr(10), edition)}<script>var text = "Cart {edition}";</script>
</body></html>
""".encode()


def html(edition):
    """A page without scripts of a server, which needs repair: an open tag and a stray "<"."""
    return f"""<html><head><meta charset="utf-8"><title>Prix {edition}</title></head>
<body><p>One <b>bold &amp; <i>été</i> text {edition}.</p>
{_more("<p>{}</p>" + chr(10), edition)}<p>2 < 3</p></body></html>
""".encode()


def text(edition):
    # Other texts than those of the page, so that neither keeps the translations of the other.
    more = _more("{}\r\n\r\n", edition).replace("Line", "Row").replace("makes the document long", "fills the notice")
    return f"A notice, edition {edition}.\r\n\r\n{more}The café is open.\r\n".encode()


def mif(edition):
    """A FrameMaker document: number format, variable, cross-reference, index marker, an embedded object."""
    paragraph = """ <Para
  <ParaLine
   <Marker
    <MType 2>
    <MTypeName `Index'>
    <MText `{0}'>
   >
   <String `{0}'>
  >
 >
"""
    text = f"""<MIFFile 7.00>
<PgfCatalog
 <Pgf
  <PgfTag `Step'>
  <PgfNumFormat `S:Step {edition} <n+\\>:\\\\t'>
 >
>
<VariableFormats
 <VariableFormat
  <VariableName `Product'>
  <VariableDef `Garden pump {edition}'>
 >
>
<XRefFormats
 <XRefFormat
  <XRefName `Page'>
  <XRefDef `page {edition} <$pagenum\\>'>
 >
>
<AFrames
 <Frame
  <ID 1>
  <ImportObject
=FrameVector
&%v
&0000{edition}F2A
=EndInset
  >
 >
>
<TextFlow
 <Para
  <ParaLine
   <Marker
    <MType 2>
    <MTypeName `Index'>
    <MText `pump {edition};maintenance'>
   >
   <String `Rinse the filter {edition}.'>
  >
 >
{_more(paragraph, edition)}>
"""
    # A statement that holds others has a blank behind its name.
    return re.sub(r"^( *<\w+)$", r"\1 ", text, flags=re.MULTILINE).encode()


def rtf(edition):
    """A letter with a picture and an embedded object."""
    more = _more(r"{}\par ", edition)
    return (rf"{{\rtf1\ansi\ansicpg1252\deff0{{\fonttbl{{\f0 Arial;}}}}"
            rf"\pard Dear caf\'e9 {edition},\par {{\pict\wmetafile8 0102{edition}f}}\par "
            rf"{{\object\objemb{{\*\objdata 4142{edition}3}}}} {more}yours\par}}").encode() + b"\r\n"


def rc(edition):
    """A resource script with a menu and strings."""
    return (f'#include <windows.h>\r\n\r\nLANGUAGE 9, 1\r\n#pragma code_page(1252)\r\n\r\nMAIN MENU\r\nBEGIN\r\n'
            f'    MENUITEM "&Open {edition}", 100\r\nEND\r\n\r\nSTRINGTABLE\r\nBEGIN\r\n'
            f'    1, "Caf\xe9 {edition}"\r\n    2, "Page %d of %d"\r\nEND\r\n').encode("cp1252")
