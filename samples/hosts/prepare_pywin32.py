"""Prepares a server page, makes bilingual documents of it and rebuilds it:  python prepare_pywin32.py C:\\shop\\index.asp

Needs pywin32. Tested: compiled to byte code, its members compared with the interface (cli_hosts). It has never been run.
"""
import os
import sys

import win32com.client


def result_of(answer):
    """pywin32 returns the arguments that the library writes back behind the result."""
    return answer if isinstance(answer, tuple) else (answer,)


def main():
    page = os.path.abspath(sys.argv[1])
    wizard = win32com.client.Dispatch("K19FPW.K19FPWObj")
    wizard.QuietMode = 1  # no message boxes: results say what failed
    result = result_of(wizard.PreProcess(page))[0]
    if result != 0:
        sys.exit(f"not prepared, result {result}")

    # The reference suite's filters; a suite of your own has its own.
    catalogue = win32com.client.Dispatch("K19Suite.FilterCatalogue")
    documents = []
    for index in range(wizard.GetFileCount()):
        produced = result_of(wizard.GetFile(index))[0]
        stem, extension = os.path.splitext(produced)
        document = f"{stem}_{extension[1:]}_FR.tud"
        tag = "K19HTM" if extension.lower() == ".htm" else "K19TXT"
        catalogue.Convert(produced, document, "", "EN-US", 0, "FR", 0, tag, "Paragraph")
        documents.append(document)
        print(document)

    # Here the documents are translated. Then the first one brings the whole page back.
    result, *written = result_of(wizard.CreateTranslation(documents[0], "", 0, 0))
    if result != 0:
        sys.exit(f"not rebuilt: {wizard.LastError}")
    print(written[1] if len(written) > 1 else "rebuilt")


main()
