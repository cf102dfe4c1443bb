// Prepares a server page, makes bilingual documents of it and rebuilds it:  prepare.exe C:\shop\index.asp
// Tested: compiled by the Mono compiler where it is installed, its members compared with the interface (cli_hosts). It
// has never been run.
using System;
using System.Collections.Generic;
using System.IO;

static class Prepare {
  static dynamic Create(string identifier) {
    return Activator.CreateInstance(Type.GetTypeFromProgID(identifier, true));
  }

  static int Main(string[] arguments) {
    string page = Path.GetFullPath(arguments[0]);
    dynamic wizard = Create("K19FPW.K19FPWObj");
    wizard.QuietMode = 1;  // no message boxes: results say what failed
    int result = wizard.PreProcess(ref page);
    if (result != 0) {
      Console.Error.WriteLine("not prepared, result " + result);
      return 1;
    }

    // The reference suite's filters; a suite of your own has its own.
    dynamic catalogue = Create("K19Suite.FilterCatalogue");
    var documents = new List<string>();
    for (int index = 0; index < wizard.GetFileCount(); index++) {
      string produced = wizard.GetFile(ref index);
      string extension = Path.GetExtension(produced).TrimStart('.');
      string document = produced.Substring(0, produced.Length - extension.Length - 1) + "_" + extension + "_FR.tud";
      string filter = extension.ToLowerInvariant() == "htm" ? "K19HTM" : "K19TXT";
      catalogue.Convert(produced, document, "", "EN-US", 0, "FR", 0, filter, "Paragraph");
      documents.Add(document);
      Console.WriteLine(document);
    }

    // Here the documents are translated. Then the first one brings the whole page back.
    string first = documents[0], target = "";
    int preview = 0, highlight = 0;
    result = wizard.CreateTranslation(ref first, ref target, ref preview, ref highlight);
    if (result != 0) {
      Console.Error.WriteLine("not rebuilt: " + (string)wizard.LastError);
      return 1;
    }
    Console.WriteLine(target);
    return 0;
  }
}
