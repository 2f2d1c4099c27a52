; SPDX-License-Identifier: Apache-2.0
; The installer for Windows, from a tree that cmake --install made (packaging/windows/make-installer.sh):
;   vanto-clser-VERSION-win64.exe [/S] [/D=FOLDER]
; /S asks nothing. The programs' folder goes on the path of the machine, the GenTL producer's on the list where consumers
; look for producers, and everything goes away again with the uninstaller.
Target amd64-unicode
!include MUI2.nsh

Name "Vanto Camera Link ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Vanto"
InstallDirRegKey HKLM "Software\Vanto" "InstallFolder"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vanto"

!insertmacro MUI_PAGE_LICENSE "${TREE}\share\doc\vanto\LICENSE"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

VIProductVersion "${VERSION}"
VIAddVersionKey /LANG=1033 "ProductName" "Vanto Camera Link"
VIAddVersionKey /LANG=1033 "FileDescription" "Installer of Vanto Camera Link"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "LegalCopyright" "Apache-2.0"

; A version that is there goes first: what it had and this one has not would stay for ever.
Function .onInit
    SetRegView 64
    ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
    IfFileExists "$0\uninstall.exe" 0 done
    ExecWait '"$0\uninstall.exe" /S _?=$0'
    Delete "$0\uninstall.exe"
    RMDir "$0"
done:
FunctionEnd

Function un.onInit
    SetRegView 64
FunctionEnd

Section "Install"
    SetOutPath "$INSTDIR"
    File /r "${TREE}\*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "Software\Vanto" "InstallFolder" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Vanto Camera Link"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "Publisher" "Vanto"
    WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
    nsExec::Exec '"$INSTDIR\libexec\path-entry.exe" add Path "$INSTDIR\bin"'
    Pop $0
    StrCmp $0 "0" +2
    DetailPrint "The folder $INSTDIR\bin could not be put on the path."
    nsExec::Exec '"$INSTDIR\libexec\path-entry.exe" add GENICAM_GENTL64_PATH "$INSTDIR\bin\vanto\gentl"'
    Pop $0
    StrCmp $0 "0" +2
    DetailPrint "The folder $INSTDIR\bin\vanto\gentl could not be put into GENICAM_GENTL64_PATH."
SectionEnd

; What others put into the folder, plug-ins and drivers, stays.
Section "Uninstall"
    nsExec::Exec '"$INSTDIR\libexec\path-entry.exe" remove Path "$INSTDIR\bin"'
    Pop $0
    nsExec::Exec '"$INSTDIR\libexec\path-entry.exe" remove GENICAM_GENTL64_PATH "$INSTDIR\bin\vanto\gentl"'
    Pop $0
    !include "${FILES}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
    DeleteRegKey HKLM "Software\Vanto"
SectionEnd
