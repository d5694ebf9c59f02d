; The installer's own texts; all others are NSIS'.
LangString StartWithWindows ${LANG_ENGLISH} "Start with Windows"
LangString StartWithWindows ${LANG_SIMPCHINESE} "开机时自动启动"
LangString Settings ${LANG_ENGLISH} "My settings"
LangString Settings ${LANG_SIMPCHINESE} "我的设置"
LangString StillRunning ${LANG_ENGLISH} "${PRODUCT} is running and does not close. Quit it from its icon in the notification area, then try again."
LangString StillRunning ${LANG_SIMPCHINESE} "${PRODUCT} 正在运行且未能自动退出。请通过通知区域中的图标退出程序，然后重试。"
LangString NeedsWindows10 ${LANG_ENGLISH} "${PRODUCT} needs Windows 10 or later."
LangString NeedsWindows10 ${LANG_SIMPCHINESE} "${PRODUCT} 需要 Windows 10 或更高版本。"
