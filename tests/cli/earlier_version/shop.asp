<html><head><title>The shop</title></head><body>
<h1>Welcome to the shop</h1>
<p>We sell <b>good</b> things.</p>
<% If closed Then MsgBox "We are closed today" %>
</body></html>
