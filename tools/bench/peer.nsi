; The least that makes an uninstaller with the usual pages: makensis -DOUTPUT=setup.exe peer.nsi
!include MUI2.nsh
Unicode true
Name "Peer"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Peer"
RequestExecutionLevel admin
SilentInstall silent
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Section
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
SectionEnd

Section Uninstall
  RMDir /r "$INSTDIR"
SectionEnd
