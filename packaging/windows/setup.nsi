; The installer K19FPW-setup.exe. scripts/release.sh calls it:
;
;   makensis -DVERSION=1.0.0 -DFILES=<folder with x64, x86, docs and samples> -DREMOVE=<what is removed of the last two> -DOUTPUT=<file> setup.nsi
;
; Switches of the installer: /S (no questions), /AllUsers or /CurrentUser, /PATH (the command on the PATH), /SUITE or
; /NOSUITE (the reference suite for all hosts; without either where no suite is there yet), /NOX86 (no library for 32-bit hosts), /D=FOLDER (last, without quotes).
; Exit codes: 0 installed; 2 failed or ended by the user; 3 installed, but a file is in use and is replaced when Windows starts
; next; 4 installed, but something that was wanted could not be done. install.log in the folder names it.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
SetDateSave off ; the same bytes from each build
Name "KAVO File Processing Wizard"
OutFile "${OUTPUT}"
BrandingText "KAVO File Processing Wizard ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "KAVO File Processing Wizard"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs the KAVO File Processing Wizard"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!define PRODUCT K19FPW
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR ${PRODUCT}
; An upgrade goes where the version before it went.
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME InstallLocation
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME InstallLocation
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include Sections.nsh
!include FileFunc.nsh
!include WordFunc.nsh
!include WinMessages.nsh

!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var per_user   ; 1: for one user
Var exit_code
Var log

!macro Say TEXT
  DetailPrint "${TEXT}"
  FileWrite $log "${TEXT}$\r$\n"
!macroend
!define Say "!insertmacro Say"

; Something that was wanted is missing: said, and in the exit code.
!macro Fault TEXT
  ${Say} "${TEXT}"
  StrCpy $exit_code 4
  MessageBox MB_OK|MB_ICONEXCLAMATION "${TEXT}" /SD IDOK
!macroend
!define Fault "!insertmacro Fault"

; A file that a host holds is replaced when Windows starts next. Only an administrator may ask for that.
!macro Place SOURCE NAME
  SetOverwrite try
  ClearErrors
  File "/oname=${NAME}" "${SOURCE}"
  ${If} ${Errors}
    SetOverwrite on
    ClearErrors
    File "/oname=${NAME}.new" "${SOURCE}"
    ; MOVEFILE_REPLACE_EXISTING and MOVEFILE_DELAY_UNTIL_REBOOT
    System::Call 'kernel32::MoveFileExW(w "$OUTDIR\${NAME}.new", w "$OUTDIR\${NAME}", i 5) i .r0'
    ${If} $0 = 0
      Delete "$OUTDIR\${NAME}.new"
      ${Fault} "$OUTDIR\${NAME} is in use and was not replaced. Close the programs that use it and install again."
    ${Else}
      ${Say} "$OUTDIR\${NAME} is in use. The new version takes its place when Windows starts next."
      ${If} $exit_code = 0
        StrCpy $exit_code 3
      ${EndIf}
    ${EndIf}
  ${EndIf}
  SetOverwrite on
!macroend
!define Place "!insertmacro Place"

; regsvr32 ARGUMENT... with the program for the library's width. The result is in $0: 0 when it succeeded.
!macro Register HOW PROGRAM LIBRARY
  ClearErrors
  ${If} $per_user = 1
    ExecWait '"${PROGRAM}" /s ${HOW} /n /i:user "${LIBRARY}"' $0
  ${Else}
    ExecWait '"${PROGRAM}" /s ${HOW} "${LIBRARY}"' $0
  ${EndIf}
  ${If} ${Errors}
    StrCpy $0 -1
  ${EndIf}
!macroend
!define Register "!insertmacro Register"

!macro Library NAME SOURCE PROGRAM
  ${Place} "${SOURCE}\${NAME}.dll" ${NAME}.dll
  ${Register} "" "${PROGRAM}" "$OUTDIR\${NAME}.dll"
  ${If} $0 <> 0
    ${Fault} "$OUTDIR\${NAME}.dll could not be registered (regsvr32: $0). Register it by hand: ${PROGRAM} $OUTDIR\${NAME}.dll"
  ${EndIf}
!macroend
!define Library "!insertmacro Library"

!define REGSVR_X64 "$WINDIR\System32\regsvr32.exe"
!define REGSVR_X86 "$WINDIR\SysWOW64\regsvr32.exe"

!macro OnPath ACTION
  ${If} $per_user = 1
    !insertmacro ${ACTION} HKCU 0x80000001 "Environment"
  ${Else}
    !insertmacro ${ACTION} HKLM 0x80000002 "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
  ${EndIf}
!macroend

; $0 is the PATH. A path that does not fit into this program's strings (1,024 characters) must not be cut: then $1 is "long".
!macro ReadPath ROOT HANDLE KEY
  StrCpy $1 0
  ; RRF_RT_ANY and RRF_NOEXPAND; the size is in bytes.
  System::Call 'advapi32::RegGetValueW(p ${HANDLE}, w "${KEY}", w "Path", i 0x1000ffff, p 0, p 0, *i .r1) i .r2'
  ReadRegStr $0 ${ROOT} "${KEY}" Path
  StrLen $3 $INSTDIR
  IntOp $3 $3 * 2
  IntOp $1 $1 + $3
  ${If} $2 = 0
  ${AndIf} $1 > 2000
    StrCpy $1 long
  ${EndIf}
!macroend

!macro AddToPath ROOT HANDLE KEY
  !insertmacro ReadPath ${ROOT} ${HANDLE} "${KEY}"
  ${If} $1 == long
    ${Fault} "The PATH is too long to be changed safely. Add $INSTDIR by hand."
  ${ElseIf} $0 == ""
    WriteRegExpandStr ${ROOT} "${KEY}" Path "$INSTDIR"
  ${Else}
    ClearErrors
    ${WordFind} ";$0;" ";$INSTDIR;" "E+1{" $2
    ${If} ${Errors} ; not in it yet
      WriteRegExpandStr ${ROOT} "${KEY}" Path "$0;$INSTDIR"
    ${EndIf}
  ${EndIf}
  SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=5000
!macroend

!macro RemoveFromPath ROOT HANDLE KEY
  !insertmacro ReadPath ${ROOT} ${HANDLE} "${KEY}"
  ${If} $1 != long
  ${AndIf} $0 != ""
    ${un.WordReplace} ";$0;" ";$INSTDIR;" ";" "+" $1
    ${If} $1 != ";$0;"
      StrCpy $1 $1 "" 1
      StrCpy $1 $1 -1
      WriteRegExpandStr ${ROOT} "${KEY}" Path "$1"
      SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=5000
    ${EndIf}
  ${EndIf}
!macroend

; The page that asks for whom comes after .onInit.
Section -begin
  StrCpy $per_user 0
  ${If} $MultiUser.InstallMode == CurrentUser
    StrCpy $per_user 1
  ${EndIf}
SectionEnd

Section "The library and the kavo command" main
  SectionIn RO
  SetOutPath "$INSTDIR"
  FileOpen $log "$INSTDIR\install.log" w
  ${Say} "KAVO File Processing Wizard ${VERSION}"
  ${Place} "${FILES}\x64\kavo.exe" kavo.exe
  ${Place} "${FILES}\x64\K19Subst.exe" K19Subst.exe
  ${Library} K19FPW "${FILES}\x64" "${REGSVR_X64}"
  ${Place} "${FILES}\x64\K19FPW.manifest" K19FPW.manifest
  File "${FILES}\README.md" "${FILES}\CHANGELOG.md" "${FILES}\NOTICES.txt"
  SetOutPath "$INSTDIR\docs"
  File /r "${FILES}/docs/*"
  SetOutPath "$INSTDIR\samples"
  File /r "${FILES}/samples/*"
  SetOutPath "$INSTDIR"
  CreateDirectory "$SMPROGRAMS\KAVO File Processing Wizard"
  CreateShortcut "$SMPROGRAMS\KAVO File Processing Wizard\KAVO File Processing Wizard.lnk" "$INSTDIR\kavo.exe" wizard
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "KAVO File Processing Wizard"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\kavo.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize "$0"
SectionEnd

Section "The library for 32-bit hosts" x86
  SetOutPath "$INSTDIR\x86"
  ${Library} K19FPW "${FILES}\x86" "${REGSVR_X86}"
  ${Place} "${FILES}\x86\K19FPW.manifest" K19FPW.manifest
  SetOutPath "$INSTDIR"
SectionEnd

Section /o "The command on the PATH" path
  !insertmacro OnPath AddToPath
SectionEnd

; The library asks a suite for its filters. Where a translation suite is installed, it has registered components of the same
; names, and hosts go on with those.
Section "The reference suite for all hosts" suite
  SetOutPath "$INSTDIR"
  ${Library} K19Suite "${FILES}\x64" "${REGSVR_X64}"
  ${If} ${SectionIsSelected} ${x86}
    SetOutPath "$INSTDIR\x86"
    ${Library} K19Suite "${FILES}\x86" "${REGSVR_X86}"
    SetOutPath "$INSTDIR"
  ${EndIf}
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" Suite 1
SectionEnd

Section -end
  FileClose $log
  SetErrorLevel $exit_code
  ${If} $exit_code = 3
    MessageBox MB_OK|MB_ICONINFORMATION "A program is using the library. The new version takes its place when Windows starts next." /SD IDOK
  ${EndIf}
SectionEnd

LangString text_main ${LANG_ENGLISH} "K19FPW.dll for hosts, the kavo command with its wizard, documents and samples."
LangString text_x86 ${LANG_ENGLISH} "The same library for hosts of 32 bits."
LangString text_path ${LANG_ENGLISH} "Makes $\"kavo$\" known to the command line."
LangString text_suite ${LANG_ENGLISH} "Registers K19Suite.dll. Without a suite the library cannot work. Where a translation suite is installed, leave it out: its components have the same names."
!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${main} $(text_main)
  !insertmacro MUI_DESCRIPTION_TEXT ${x86} $(text_x86)
  !insertmacro MUI_DESCRIPTION_TEXT ${path} $(text_path)
  !insertmacro MUI_DESCRIPTION_TEXT ${suite} $(text_suite)
!insertmacro MUI_FUNCTION_DESCRIPTION_END

!macro Switch NAME SECTION STATE
  ClearErrors
  ${GetOptions} $R0 "${NAME}" $R1
  ${IfNot} ${Errors}
    SectionSetFlags ${SECTION} ${STATE}
  ${EndIf}
!macroend

Function .onInit
  StrCpy $exit_code 0
  SetRegView 64
  !insertmacro MULTIUSER_INIT
  ${GetParameters} $R0
  !insertmacro Switch /PATH ${path} 1
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" Suite
  ReadRegStr $1 HKCR "K19Suite.FilterCatalogue\CLSID" ""
  ${If} $0 <> 1
  ${AndIf} $1 != ""
    SectionSetFlags ${suite} 0 ; the suite of somebody else
  ${EndIf}
  !insertmacro Switch /SUITE ${suite} 1
  !insertmacro Switch /NOSUITE ${suite} 0
  !insertmacro Switch /NOX86 ${x86} 0
FunctionEnd

Function un.onInit
  StrCpy $exit_code 0
  SetRegView 64
  !insertmacro MULTIUSER_UNINIT
  StrCpy $per_user 0
  ${If} $MultiUser.InstallMode == CurrentUser
    StrCpy $per_user 1
  ${EndIf}
FunctionEnd

!macro un.File NAME
  Delete "$INSTDIR\${NAME}.new" ; of an upgrade that waits for the next start
  Delete /REBOOTOK "$INSTDIR\${NAME}"
!macroend

; The user's settings and memories stay.
Section Uninstall
  ReadRegDWORD $3 SHCTX "${UNINSTALL_KEY}" Suite
  ${Register} /u "${REGSVR_X64}" "$INSTDIR\K19FPW.dll"
  ${If} $3 = 1
    ${Register} /u "${REGSVR_X64}" "$INSTDIR\K19Suite.dll"
    ${If} ${FileExists} "$INSTDIR\x86\K19Suite.dll"
      ${Register} /u "${REGSVR_X86}" "$INSTDIR\x86\K19Suite.dll"
    ${EndIf}
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\x86\K19FPW.dll"
    ${Register} /u "${REGSVR_X86}" "$INSTDIR\x86\K19FPW.dll"
  ${EndIf}
  !insertmacro OnPath RemoveFromPath
  !insertmacro un.File kavo.exe
  !insertmacro un.File K19Subst.exe
  !insertmacro un.File K19FPW.dll
  !insertmacro un.File K19FPW.manifest
  !insertmacro un.File K19Suite.dll
  !insertmacro un.File x86\K19FPW.dll
  !insertmacro un.File x86\K19FPW.manifest
  !insertmacro un.File x86\K19Suite.dll
  !insertmacro un.File README.md
  !insertmacro un.File CHANGELOG.md
  !insertmacro un.File NOTICES.txt
  !insertmacro un.File install.log
  !insertmacro un.File uninstall.exe
  !include "${REMOVE}" ; the documents and samples, one by one: what a user made beside them stays
  RMDir "$INSTDIR\x86"
  RMDir "$INSTDIR" ; stays while it holds a file that somebody else put there
  RMDir /r "$SMPROGRAMS\KAVO File Processing Wizard"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd
