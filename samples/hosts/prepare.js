// Prepares a server page, makes bilingual documents of it and rebuilds it:  cscript prepare.js C:\shop\index.asp
// Tested: run by the system's script host under Wine (script_prepare.js).
var files = new ActiveXObject("Scripting.FileSystemObject");
var page = files.GetAbsolutePathName(WScript.Arguments(0));

var wizard = new ActiveXObject("K19FPW.K19FPWObj");
wizard.QuietMode = 1; // no message boxes: results say what failed
var result = wizard.PreProcess(page);
if (result !== 0) {
  WScript.Echo("not prepared, result " + result);
  WScript.Quit(1);
}

// The reference suite's filters; a suite of your own has its own.
var catalogue = new ActiveXObject("K19Suite.FilterCatalogue");
var documents = [];
for (var index = 0; index < wizard.GetFileCount(); index++) {
  var produced = wizard.GetFile(index);
  var extension = files.GetExtensionName(produced);
  var filter = extension.toLowerCase() === "htm" ? "K19HTM" : "K19TXT";
  documents[index] = produced.slice(0, -extension.length - 1) + "_" + extension + "_FR.tud";
  catalogue.Convert(produced, documents[index], "", "EN-US", 0, "FR", 0, filter, "Paragraph");
  WScript.Echo(documents[index]);
}

// Here the documents are translated. Then the first one brings the whole page back. JScript passes no variable by
// reference, so the target's name is that of the source with the language: index_FR.asp.
result = wizard.CreateTranslation(documents[0], "", 0, 0);
if (result !== 0) {
  WScript.Echo("not rebuilt: " + wizard.LastError);
  WScript.Quit(1);
}
WScript.Echo("done");
