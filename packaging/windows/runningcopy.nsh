; Ends a running copy the way its own menu does, and never by force: it may be talking to the interface.

; The tray's window, by the name that Qt gives it in every version. Closing it asks the program to quit.
!define TRAY_WINDOW "QTrayIconMessageWindow"
!define WM_CLOSE_MESSAGE 0x0010
!define FILE_MAP_READ 0x0004
!define PROCESS_QUERY_LIMITED_INFORMATION 0x1000
!define POLL_INTERVAL 250 ; milliseconds
!define POLLS 40

!macro RUNNING_COPY un

; Pushes 1 while a copy runs, in whichever folder, or still holds its file; otherwise 0.
Function ${un}IsRunning
    System::Call 'kernel32::OpenFileMappingW(i ${FILE_MAP_READ}, i 0, w "${RUNNING_MARKER}") p.r0'
    ${If} $0 P<> 0
        System::Call 'kernel32::CloseHandle(p r0)'
        Push 1
        Return
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${PROGRAM}" a
        ${If} ${Errors}
            Push 1
            Return
        ${EndIf}
        FileClose $0
    ${EndIf}
    Push 0
FunctionEnd

; Pops a window, pushes the file name of the program that it belongs to.
Function ${un}ProgramOfWindow
    Pop $0
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r1)'
    System::Call 'kernel32::OpenProcess(i ${PROCESS_QUERY_LIMITED_INFORMATION}, i 0, i r1) p.r2'
    StrCpy $3 ""
    System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r3, *i ${NSIS_MAX_STRLEN})'
    System::Call 'kernel32::CloseHandle(p r2)'
    ${GetFileName} "$3" $3
    Push $3
FunctionEnd

; Other programs with Qt have a window of this name, too.
Function ${un}AskToQuit
    StrCpy $R1 0
    ${Do}
        System::Call 'user32::FindWindowExW(p 0, p $R1, p 0, w "${TRAY_WINDOW}") p.R1'
        ${If} $R1 P= 0
            ${ExitDo}
        ${EndIf}
        Push $R1
        Call ${un}ProgramOfWindow
        Pop $R2
        ${If} $R2 == "${PROGRAM}"
            System::Call 'user32::PostMessageW(p $R1, i ${WM_CLOSE_MESSAGE}, p 0, p 0)'
        ${EndIf}
    ${Loop}
FunctionEnd

; Pushes 1 when a copy still runs at the end of the deadline; otherwise 0. Asked again and again,
; because a main window that is open says no, but hides.
Function ${un}WaitUntilEnded
    ${For} $R0 1 ${POLLS}
        Call ${un}IsRunning
        Pop $0
        ${If} $0 = 0
            Push 0
            Return
        ${EndIf}
        Call ${un}AskToQuit
        Sleep ${POLL_INTERVAL}
    ${Next}
    Push 1
FunctionEnd

Function ${un}EndRunningCopy
    ${Do}
        Call ${un}WaitUntilEnded
        Pop $0
        ${If} $0 = 0
            Return
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(StillRunning)" /SD IDCANCEL IDCANCEL`
            SetErrorLevel ${EXIT_STILL_RUNNING}
            Quit
        ${EndIf}
    ${Loop}
FunctionEnd

!macroend
