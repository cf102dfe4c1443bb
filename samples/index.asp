<%@ Language="VBScript" %>
<!-- #include file="settings.inc" -->
<%
' The visitor's name comes from the form, the list from the shop's own table.
Dim visitor, page_class
visitor = Request.Form("visitor")
If visitor = "" Then visitor = "guest"
page_class = "wide"
%>
<!DOCTYPE html>
<html>
<head>
<title>Garden shop</title>
<script>
// Runs in the browser; goes with the scripts of the server all the same.
function show(name) { document.getElementById("cart").innerHTML = name + " <b>added</b>"; }
</script>
</head>
<body class=<%=page_class%>>
<h1>Welcome, <%=Server.HTMLEncode(visitor)%>!</h1>
<p>Fresh <b>plants</b> and <i>tools</i> for your garden, delivered <a href="dates.asp?week=<%=Week(Now)%>">this week</a>.</p>
<table <%=table_attributes%>>
<% For Each plant In plants %>
<tr><td><%=plant.Name%></td><td align=right><%=FormatCurrency(plant.Price)%></td></tr>
<% Next %>
</table>
<p onclick="show('<%=Replace(visitor, "'", "\'")%>')">Put everything into the cart</p>
<p id="cart">Your cart is empty.</p>
</body>
</html>
