; The installer, for the user who runs it, without administrator's rights. tools/make-release compiles it with
; WORK (with product.nsh and files.nsh, made for it) and OUTPUT.
;
; Silently: /S, and /AUTOSTART=1 or 0 for the start with Windows. Without /AUTOSTART it stays as it was.
; The uninstaller, silently: /S, and /PURGE to remove the settings, too.
; Exit codes: 0 done, 1 cancelled, 2 could not write, 3 a running copy does not end, 4 Windows is too old.

Target amd64-unicode
SetCompressor /SOLID lzma
; In MB; what is installed is less, so that all of it is looked back to.
SetCompressorDictSize 32
SetDateSave off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include TextFunc.nsh
!include WinVer.nsh
!include "${WORK}/product.nsh"
!include "${WORK}/files.nsh"

!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
; Where the Task Manager notes that the user switched an entry of the former off.
!define APPROVED_KEY "Software\Microsoft\Windows\CurrentVersion\Explorer\StartupApproved\Run"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${ID}"
!define SHORTCUT "$SMPROGRAMS\${PRODUCT}.lnk"
!define CONTENTS_LIST "contents.txt"
!define UNINSTALLER "uninstall.exe"

!define EXIT_STILL_RUNNING 3
!define EXIT_OLD_WINDOWS 4

Name "${PRODUCT}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
RequestExecutionLevel user
ManifestSupportedOS Win10
ManifestDPIAware true
ManifestLongPathAware true
AllowSkipFiles off
BrandingText "${PRODUCT} ${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES

; Windows' language chooses; English when it is neither.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
!include strings.nsh

!macro VERSION_TEXTS language
    VIAddVersionKey /LANG=${language} "ProductName" "${PRODUCT}"
    VIAddVersionKey /LANG=${language} "CompanyName" "${PUBLISHER}"
    VIAddVersionKey /LANG=${language} "LegalCopyright" "${PUBLISHER}"
    VIAddVersionKey /LANG=${language} "FileDescription" "${PRODUCT} setup"
    VIAddVersionKey /LANG=${language} "FileVersion" "${VERSION}"
    VIAddVersionKey /LANG=${language} "ProductVersion" "${VERSION}"
!macroend
VIProductVersion "${VERSION}.0"
!insertmacro VERSION_TEXTS ${LANG_ENGLISH}
!insertmacro VERSION_TEXTS ${LANG_SIMPCHINESE}

!include runningcopy.nsh
!include contents.nsh
!insertmacro RUNNING_COPY ""
!insertmacro RUNNING_COPY "un."
!insertmacro CONTENTS ""
!insertmacro CONTENTS "un."

Section "${PRODUCT}" ProgramSection
    SectionIn RO
    Call EndRunningCopy
    ; An older version may have files that this one has not, or be elsewhere.
    ReadRegStr $R0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $R0 != ""
        Push $R0
        Call RemoveContents
    ${EndIf}
    Push $INSTDIR
    Call RemoveContents

    !insertmacro CONTENTS_EXTRACT
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\${UNINSTALLER}"
    CreateShortcut "${SHORTCUT}" "$INSTDIR\${PROGRAM}"

    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM},0"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\${UNINSTALLER}"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\${UNINSTALLER}" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${CONTENTS_KIB}
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section /o $(StartWithWindows) AutostartSection
    ReadRegStr $0 HKCU "${RUN_KEY}" "${ID}"
    ${If} $0 == ""
        ; Chosen anew. An update leaves it switched off where the Task Manager says so.
        DeleteRegValue HKCU "${APPROVED_KEY}" "${ID}"
    ${EndIf}
    WriteRegStr HKCU "${RUN_KEY}" "${ID}" '"$INSTDIR\${PROGRAM}"'
SectionEnd

; Sections say what to do; of this one the box of the one before says what not to.
Section "-NoAutostart"
    ${IfNot} ${SectionIsSelected} ${AutostartSection}
        Call RemoveAutostart
    ${EndIf}
SectionEnd

!macro REMOVE_AUTOSTART un
    Function ${un}RemoveAutostart
        DeleteRegValue HKCU "${RUN_KEY}" "${ID}"
        DeleteRegValue HKCU "${APPROVED_KEY}" "${ID}"
    FunctionEnd
!macroend
!insertmacro REMOVE_AUTOSTART ""
!insertmacro REMOVE_AUTOSTART "un."

Function .onInit
    ${IfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "$(NeedsWindows10)" /SD IDOK
        SetErrorLevel ${EXIT_OLD_WINDOWS}
        Quit
    ${EndIf}
    ReadRegStr $0 HKCU "${RUN_KEY}" "${ID}"
    ${If} $0 != ""
        !insertmacro SelectSection ${AutostartSection}
    ${EndIf}
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/AUTOSTART=" $1
    ${IfNot} ${Errors}
        ${If} $1 = 1
            !insertmacro SelectSection ${AutostartSection}
        ${Else}
            !insertmacro UnselectSection ${AutostartSection}
        ${EndIf}
    ${EndIf}
FunctionEnd

Section "un.${PRODUCT}"
    SectionIn RO
    Call un.EndRunningCopy
    Push $INSTDIR
    Call un.RemoveContents
    ; Goes only when it is empty: the first program of a user makes it.
    RMDir "$LOCALAPPDATA\Programs"
    Delete "${SHORTCUT}"
    Call un.RemoveAutostart
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd

Section /o "un.$(Settings)" SettingsSection
    RMDir /r "$APPDATA\${SETTINGS_FOLDER}"
SectionEnd

Function un.onInit
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/PURGE" $1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${SettingsSection}
    ${EndIf}
FunctionEnd
