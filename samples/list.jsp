<%@ page language="java" contentType="text/html; charset=UTF-8" %>
<%@ include file="header.jspf" %>
<%!
  private String shade(int row) { return row % 2 == 0 ? "even" : "odd"; }
%>
<!DOCTYPE html>
<html>
<head><title>Delivery list</title></head>
<body>
<h2>Deliveries of <%= request.getAttribute("day") %></h2>
<ul>
<% int row = 0;
   for (Delivery delivery : deliveries) { %>
<li class="<%= shade(row++) %>"><b><%= delivery.customer() %></b>: to be delivered before <%= delivery.hour() %> o&rsquo;clock</li>
<% } %>
</ul>
<p>Nobody at home? Leave the parcel <em>with the neighbours</em>.</p>
</body>
</html>
