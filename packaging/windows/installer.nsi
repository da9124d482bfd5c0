; makensis -DVERSION=1.2.3 -DFILES=folder -DOUT=setup.exe installer.nsi
; For the account that runs it, without the administrator's rights.
Unicode true
!define TITLE "KOVA Device Server Setup Wizard"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\kova-setup-wizard"
Name "${TITLE}"
OutFile "${OUT}"
InstallDir "$LOCALAPPDATA\Programs\kova-setup-wizard"
RequestExecutionLevel user
ManifestDPIAware true
SetCompressor /SOLID lzma
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
  SetOutPath "$INSTDIR"
  File /r "${FILES}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\${TITLE}.lnk" "$INSTDIR\kova-setup-wizard.exe"
  WriteRegStr HKCU "${KEY}" "DisplayName" "${TITLE}"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\kova-setup-wizard.exe"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  ; By name: the folder may be one that holds other things as well.
  Delete "$INSTDIR\kova-setup-wizard.exe"
  Delete "$INSTDIR\LICENSE.txt"
  Delete "$INSTDIR\REBUILD.txt"
  RMDir /r "$INSTDIR\licences"
  RMDir /r "$INSTDIR\docs"
  RMDir /r "$INSTDIR\examples"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${TITLE}.lnk"
  DeleteRegKey HKCU "${KEY}"
SectionEnd
