; The installer for Windows: makensis -DVERSION=1.1.0 -DFILES=FOLDER -DLISTS=FOLDER -DICON=FILE -DOUT=FILE orlo.nsi
; For one user, without an administrator, since the program keeps its records in its own folder. FILES is the folder of
; the archive; LISTS has what installer.sh makes of it.
;
; A file that a user may change (a report, a layout, a pack to try the program with) is put only where there is none, or
; where it is still as an earlier installer put it; ".package" keeps them so, to tell. The records are put only where
; there are none.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
!include MUI2.nsh
!include LogicLib.nsh
!include WordFunc.nsh

!define NAME "Verrano (ORLO)"
!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ORLO"
Name "${NAME}"
OutFile "${OUT}"
InstallDir "$LOCALAPPDATA\Programs\ORLO"
InstallDirRegKey HKCU "${ENTRY}" InstallLocation
BrandingText "${NAME} ${VERSION}"
AllowSkipFiles off
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "${NAME}, installer"
VIAddVersionKey CompanyName "Tollbeck"
VIAddVersionKey LegalCopyright "2026 Tollbeck"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${NSISDIR}/Contrib/Graphics/Wizard/nsis3-metro.bmp"
!define MUI_ABORTWARNING
!define MUI_DIRECTORYPAGE_TEXT_TOP "The program and your records will be in this folder, which has to be one that you can write to. If ${NAME} is there already, your records and the reports that you changed stay as they are."
!define MUI_FINISHPAGE_RUN "$INSTDIR\orlo.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start ORLO"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "The program will be removed from this folder. Your records, their copies, and the reports and layouts that you changed stay there."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var running ; an open handle of the program's file, with which nobody can start it
Var list
Var line
Var part

!macro Stop TEXT
    MessageBox MB_ICONSTOP|MB_OK "${TEXT}" /SD IDOK
    SetErrorLevel 2
    Quit
!macroend

!define BLOCK 65536 ; bytes of a file that are looked at in one step
!define BLOCKS 131072

; For the installer and for the uninstaller.
!macro Shared un
; Waits until none of the programs runs, and keeps the main one from being started; gives up if nobody is there to ask.
Function ${un}KeepProgramsOut
  again:
    !insertmacro Held orlo-db.exe
    !insertmacro Held orlo-jet.exe
    !insertmacro Held orlo-report.exe
    StrCpy $running ""
    IfFileExists "$INSTDIR\orlo.exe" 0 out
    ClearErrors
    FileOpen $running "$INSTDIR\orlo.exe" a
    IfErrors 0 out
  held:
    MessageBox MB_ICONEXCLAMATION|MB_RETRYCANCEL "ORLO is running, or its folder can't be written to. Save, close the program, and choose Retry.$\r$\n$\r$\n$INSTDIR" /SD IDCANCEL IDRETRY again
    SetErrorLevel 2
    Quit
  out:
FunctionEnd

; Whether the files $0 and $1 have the same bytes: $2 is 1 or 0.
Function ${un}Same
    StrCpy $2 0
    ClearErrors
    FileOpen $3 $0 r
    IfErrors out
    FileOpen $4 $1 r
    IfErrors close3
    System::Alloc ${BLOCKS}
    Pop $5
    IntPtrOp $6 $5 + ${BLOCK}
  next:
    System::Call 'kernel32::ReadFile(p r3, p r5, i ${BLOCK}, *i .r7, p 0) i .r9'
    IntCmp $9 0 free
    System::Call 'kernel32::ReadFile(p r4, p r6, i ${BLOCK}, *i .r8, p 0) i .r9'
    IntCmp $9 0 free
    IntCmp $7 $8 0 free free
    System::Call 'ntdll::RtlCompareMemory(p r5, p r6, p r7) p .r8'
    IntCmp $7 $8 0 free free
    IntCmp $7 0 0 next next
    StrCpy $2 1
  free:
    System::Free $5
    FileClose $4
  close3:
    FileClose $3
  out:
FunctionEnd

; The next line of the list in $line, without its end, and the part of the list in $part; nothing at the list's end.
Function ${un}ReadLine
  next:
    ClearErrors
    FileRead $list $line
    ${If} ${Errors}
        StrCpy $line ""
        Return
    ${EndIf}
    StrCpy $0 $line 1
    ${If} $0 == "["
        StrCpy $part $line -2 ; without the line's end
        Goto next
    ${EndIf}
    StrCpy $line $line -4 ; and without "=1"
FunctionEnd

; Removes what this line of the list names, unless the user has changed it.
Function ${un}Remove
    StrCpy $0 "$INSTDIR\$line"
    StrCpy $1 "$INSTDIR\.package\$line"
    ${If} $part == "[folders]"
        RMDir $1
        RMDir $0 ; if it is empty
    ${ElseIf} $part == "[files]"
        Delete $0
    ${Else}
        Call ${un}Same
        Delete $1
        ${If} $2 = 1
            Delete $0
        ${EndIf}
    ${EndIf}
FunctionEnd
!macroend

!macro Held PROGRAM
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${PROGRAM}" a
        IfErrors held
        FileClose $0
    ${EndIf}
!macroend
!insertmacro Shared ""
!insertmacro Shared "un."

; In one step, over a file that may be there.
!macro Move FROM TO
    System::Call 'kernel32::MoveFileExW(w "${FROM}", w "${TO}", i 9) i .r0'
    ${If} $0 = 0
        !insertmacro Stop "The file can't be written: ${TO}"
    ${EndIf}
!macroend

; A new file that a user may change is in .package\new; $line is its name.
Function Give
    StrCpy $0 "$INSTDIR\$line"
    StrCpy $1 "$INSTDIR\.package\$line"
    IfFileExists $0 0 put
    Call Same
    StrCmp $2 1 put
    DetailPrint "Kept as it is: $line"
    Goto remember
  put:
    ClearErrors
    CopyFiles /SILENT "$INSTDIR\.package\new" "$INSTDIR\.package\copy"
    ${If} ${Errors}
        !insertmacro Stop "The file can't be written: $INSTDIR\$line"
    ${EndIf}
    !insertmacro Move "$INSTDIR\.package\copy" "$INSTDIR\$line"
  remember:
    !insertmacro Move "$INSTDIR\.package\new" "$INSTDIR\.package\$line"
FunctionEnd

!macro Give NAME
    File "/oname=.package\new" "${FILES}/${NAME}"
    StrCpy $line "${NAME}"
    Call Give
!macroend

Function .onInit
    SetShellVarContext current
    ReadRegStr $0 HKCU "${ENTRY}" DisplayVersion
    StrCmp $0 "" out
    ${VersionCompare} $0 ${VERSION} $1
    StrCmp $1 1 0 out
    MessageBox MB_ICONQUESTION|MB_YESNO|MB_DEFBUTTON2 "Version $0 is installed, which is newer than this one (${VERSION}). An older version may not be able to open your records. Install it anyway?" /SD IDNO IDYES out
    SetErrorLevel 2
    Quit
  out:
FunctionEnd

Section
    SetOutPath "$INSTDIR"
    Call KeepProgramsOut
    CreateDirectory "$INSTDIR\.package"
    ClearErrors
    FileOpen $0 "$INSTDIR\.package\new" w
    ${If} ${Errors}
        !insertmacro Stop "This folder can't be written to. Choose another one, such as in your documents.$\r$\n$\r$\n$INSTDIR"
    ${EndIf}
    FileClose $0
    SetFileAttributes "$INSTDIR\.package" HIDDEN

    !include "${LISTS}/files.nsh"
    ${IfNot} ${FileExists} "$INSTDIR\Quorrel*.mdb"
        File "${FILES}/Quorrel11.mdb"
    ${EndIf}

    ; Of the earlier version goes what this one doesn't have.
    File "/oname=.package\list.new" "${LISTS}/list.ini"
    ClearErrors
    FileOpen $list "$INSTDIR\.package\list.ini" r
    ${IfNot} ${Errors}
        Call ReadLine
        ${While} $line != ""
            ReadINIStr $0 "$INSTDIR\.package\list.new" changed $line
            ReadINIStr $1 "$INSTDIR\.package\list.new" files $line
            ReadINIStr $2 "$INSTDIR\.package\list.new" folders $line
            ${If} "$0$1$2" == ""
                Call Remove
            ${EndIf}
            Call ReadLine
        ${EndWhile}
        FileClose $list
    ${EndIf}
    !insertmacro Move "$INSTDIR\.package\list.new" "$INSTDIR\.package\list.ini"

    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\ORLO.lnk" "$INSTDIR\orlo.exe" "" "" "" "" "" "Records of a Cub Scout pack"
    WriteRegStr HKCU "${ENTRY}" DisplayName "${NAME}"
    WriteRegStr HKCU "${ENTRY}" DisplayVersion "${VERSION}"
    WriteRegStr HKCU "${ENTRY}" DisplayIcon "$INSTDIR\orlo.exe"
    WriteRegStr HKCU "${ENTRY}" Publisher "Tollbeck"
    WriteRegStr HKCU "${ENTRY}" InstallLocation "$INSTDIR"
    WriteRegStr HKCU "${ENTRY}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${ENTRY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${ENTRY}" NoModify 1
    WriteRegDWORD HKCU "${ENTRY}" NoRepair 1
    SectionGetSize 0 $0
    WriteRegDWORD HKCU "${ENTRY}" EstimatedSize $0

    ${If} $running != "" ; the last: until now it couldn't be started
        FileClose $running
    ${EndIf}
    File "${FILES}/orlo.exe"
SectionEnd

Function un.onInit
    SetShellVarContext current
FunctionEnd

Section Uninstall
    Call un.KeepProgramsOut
    ClearErrors
    FileOpen $list "$INSTDIR\.package\list.ini" r
    ${If} ${Errors}
        !insertmacro Stop "The list of what was installed isn't there any more. Delete the folder yourself, but first copy your records, Quorrel11.mdb, to somewhere else.$\r$\n$\r$\n$INSTDIR"
    ${EndIf}
    ${If} $running != ""
        FileClose $running
    ${EndIf}
    Call un.ReadLine
    ${While} $line != ""
        Call un.Remove
        Call un.ReadLine
    ${EndWhile}
    FileClose $list
    RMDir /r "$INSTDIR\.package"
    Delete "$SMPROGRAMS\ORLO.lnk"
    DeleteRegKey HKCU "${ENTRY}"
    Delete "$INSTDIR\uninstall.exe"
    SetOutPath $TEMP
    RMDir "$INSTDIR"
    ${If} ${FileExists} "$INSTDIR\*.*"
        DetailPrint "Your records are still in $INSTDIR"
        MessageBox MB_ICONINFORMATION|MB_OK "The program is removed. Your records are still in this folder, with their copies and the reports that you changed:$\r$\n$\r$\n$INSTDIR" /SD IDOK
    ${EndIf}
SectionEnd
