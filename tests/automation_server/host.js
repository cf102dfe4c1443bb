// A JScript host of the library. Argument: an empty folder for its files.
var files = new ActiveXObject("Scripting.FileSystemObject");
var folder = WScript.Arguments(0);
var checks = 0;

function check(what, found, expected) {
  checks++;
  if (found !== expected) WScript.Echo("FAILED " + what + ": found \"" + found + "\", expected \"" + expected + "\"");
}

function numberOf(call) {
  try {
    call();
  } catch (e) {
    return e.number & 0xffff;
  }
  return 0;
}

function writeFile(name, text) {
  var stream = files.CreateTextFile(name, true);
  stream.Write(text);
  stream.Close();
}

var wizard = new ActiveXObject("K19FPW.K19FPWObj");
check("count at first", wizard.GetFileCount(), 0);
check("file at first", wizard.GetFile(0), "");
check("quiet at first", wizard.QuietMode, 0);
check("error at first", wizard.LastError, "");

var page = folder + "\\page.jsp";
writeFile(page, "<html><head><title>Shop</title></head><body>\r\n<p>Hello <%= name %></p>\r\n</body></html>\r\n");
check("page prepared", wizard.PreProcess(page), 0);
check("page count", wizard.GetFileCount(), 2);
for (var index = 0; index < wizard.GetFileCount(); index++)
  check("produced file " + index, files.FileExists(wizard.GetFile(index)), true);
check("past the list", wizard.GetFile(2), "");

wizard.QuietMode = 3;
check("quiet", wizard.QuietMode, 3);
check("no document", wizard.CreateTranslation(folder + "\\missing.tud", folder + "\\target.jsp", 0, 0), 1);
check("its text", wizard.LastError, "Failed to open TUD file");

check("negative index", numberOf(function () { wizard.GetFile(-1); }), 9);
check("text that is no number is refused", numberOf(function () { wizard.GetFile("one"); }) !== 0, true);
try {
  wizard.GetFile(-1);
} catch (e) {
  check("description", e.description, "Subscript out of range");
}

WScript.Echo(checks + " checks");
WScript.Echo("done");
