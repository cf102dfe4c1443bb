# Prepares a server page, makes bilingual documents of it and rebuilds it:  .\prepare.ps1 C:\shop\index.asp
# Tested: parsed where a grammar is installed, its members compared with the interface (cli_hosts). It has never been run.
param([Parameter(Mandatory)][string]$Page)
$ErrorActionPreference = 'Stop'
$Page = (Resolve-Path $Page).Path

$wizard = New-Object -ComObject K19FPW.K19FPWObj
$wizard.QuietMode = 1   # no message boxes: results say what failed
$result = $wizard.PreProcess([ref]$Page)
if ($result -ne 0) { throw "not prepared, result $result" }

# The reference suite's filters; a suite of your own has its own.
$catalogue = New-Object -ComObject K19Suite.FilterCatalogue
$documents = @(for ($index = 0; $index -lt $wizard.GetFileCount(); $index++) {
  $produced = $wizard.GetFile([ref]$index)
  $extension = [IO.Path]::GetExtension($produced).TrimStart('.')
  $document = $produced.Substring(0, $produced.Length - $extension.Length - 1) + "_${extension}_FR.tud"
  $filter = if ($extension -eq 'htm') { 'K19HTM' } else { 'K19TXT' }
  [void]$catalogue.Convert($produced, $document, '', 'EN-US', 0, 'FR', 0, $filter, 'Paragraph')
  $document
})
$documents

# Here the documents are translated. Then the first one brings the whole page back.
$first = $documents[0]
$target = ''
$preview = 0
$highlight = 0
$result = $wizard.CreateTranslation([ref]$first, [ref]$target, [ref]$preview, [ref]$highlight)
if ($result -ne 0) { throw "not rebuilt: $($wizard.LastError)" }
$target
