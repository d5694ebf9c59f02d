; Opens the main window of the running program, as a double click on its tray icon does.
Target amd64-unicode
OutFile "${OUTPUT}"
Name "openpanel"
RequestExecutionLevel user
SilentInstall silent

!define TRAY_MESSAGE 0x8065 ; what the shell sends to Qt's tray window
!define DOUBLE_CLICK 0x0203

Section
    FindWindow $0 "" "QTrayIconMessageWindow"
    SendMessage $0 ${TRAY_MESSAGE} 0 ${DOUBLE_CLICK}
SectionEnd
