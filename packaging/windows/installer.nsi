; makensis -DVERSION=1.2.3 -DFILES=folder -DREMOVAL=removal.nsh -DOUT=setup.exe installer.nsi
; For the account that runs it, without the administrator's rights.
Target amd64-unicode
!define TITLE "KOVA Device Server Setup Wizard"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\kova-setup-wizard"
; Of a name that no other program has: the folder may be one of another program.
!define REMOVER "uninstall-kova-setup-wizard.exe"
Name "${TITLE}"
OutFile "${OUT}"
InstallDir "$LOCALAPPDATA\Programs\kova-setup-wizard"
; A newer version is offered the folder of the older one.
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
RequestExecutionLevel user
ManifestDPIAware true
SetCompressor /SOLID lzma
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
  ; What an older version had and this one has not.
  IfFileExists "$INSTDIR\${REMOVER}" 0 +2
  ExecWait '"$INSTDIR\${REMOVER}" /S _?=$INSTDIR'
  SetOutPath "$INSTDIR"
  File /r "${FILES}\*"
  WriteUninstaller "$INSTDIR\${REMOVER}"
  CreateShortcut "$SMPROGRAMS\${TITLE}.lnk" "$INSTDIR\kova-setup-wizard.exe"
  WriteRegStr HKCU "${KEY}" "DisplayName" "${TITLE}"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\kova-setup-wizard.exe"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\${REMOVER}"'
  WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\${REMOVER}" /S'
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  ; File by file: the folder may be one that holds other things as well, a project among them.
  !include "${REMOVAL}"
  Delete "$INSTDIR\${REMOVER}"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${TITLE}.lnk"
  DeleteRegKey HKCU "${KEY}"
SectionEnd
