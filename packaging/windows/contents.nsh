; Every installation leaves the list of what it put into its folder, so that whatever version comes
; next can remove exactly that, and nothing that somebody else put there.

!macro CONTENTS un

; Pops a folder, removes from it what its list names; folders of the list end in a backslash.
Function ${un}RemoveContents
    Pop $R0
    ClearErrors
    FileOpen $R1 "$R0\${CONTENTS_LIST}" r
    ${If} ${Errors}
        Return
    ${EndIf}
    ${Do}
        ClearErrors
        FileRead $R1 $R2
        ${If} ${Errors}
            ${ExitDo}
        ${EndIf}
        ${${un}TrimNewLines} "$R2" $R2
        StrCpy $R3 $R2 1 -1
        ${If} $R3 == "\"
            RMDir "$R0\$R2"
        ${ElseIf} $R2 != ""
            Delete "$R0\$R2"
        ${EndIf}
    ${Loop}
    FileClose $R1
    Delete "$R0\${UNINSTALLER}"
    Delete "$R0\${CONTENTS_LIST}"
    RMDir "$R0"
FunctionEnd

!macroend
