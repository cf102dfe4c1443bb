"""Prepares a server page, makes bilingual documents of it and rebuilds it:  python prepare_comtypes.py C:\\shop\\index.asp

Needs comtypes. Tested: compiled to byte code, its members compared with the interface (cli_hosts). It has never been run.
"""
import os
import sys

import comtypes.client


def values_of(answer):
    """comtypes returns the arguments that the library writes back, and the result behind them."""
    return answer if isinstance(answer, (list, tuple)) else [answer]


def main():
    page = os.path.abspath(sys.argv[1])
    wizard = comtypes.client.CreateObject("K19FPW.K19FPWObj")
    wizard.QuietMode = 1  # no message boxes: results say what failed
    result = values_of(wizard.PreProcess(page))[-1]
    if result != 0:
        sys.exit(f"not prepared, result {result}")

    # The reference suite's filters; a suite of your own has its own.
    catalogue = comtypes.client.CreateObject("K19Suite.FilterCatalogue", dynamic=True)
    documents = []
    for index in range(wizard.GetFileCount()):
        produced = values_of(wizard.GetFile(index))[-1]
        stem, extension = os.path.splitext(produced)
        document = f"{stem}_{extension[1:]}_FR.tud"
        tag = "K19HTM" if extension.lower() == ".htm" else "K19TXT"
        catalogue.Convert(produced, document, "", "EN-US", 0, "FR", 0, tag, "Paragraph")
        documents.append(document)
        print(document)

    # Here the documents are translated. Then the first one brings the whole page back.
    tud, target, *_, result = values_of(wizard.CreateTranslation(documents[0], "", 0, 0))
    if result != 0:
        sys.exit(f"not rebuilt: {wizard.LastError}")
    print(target)


main()
