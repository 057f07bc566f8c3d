; A setup of the sample product for runs of the wizard on Windows, made with NSIS:
;
;   makensis -DOUTPUT=setup.exe -DPROGRAMS=<folder with the built programs>
;     -DSHIPPED=<folder of the unpacked zip> setup.nsi
;
; It leaves what the wizard looks for: files, registry values, ini files, and a silent uninstaller
; under the name that another maker of setups gives it, with a .dat beside. The uninstaller takes
; the milliseconds that stand there, notes its parameters in Received\uninstaller.txt of the
; profile, and removes everything, the folder of the wizard included; the effect resources only with
; /DELRESOURCE.
Target amd64-unicode
Name "Norvane Clipwright"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Norvane\Norvane Clipwright"
RequestExecutionLevel admin
SilentInstall silent
SilentUnInstall silent
SetCompress off ; it is made for one run

!include FileFunc.nsh

!macro SampleFile name
  FileOpen $0 "$INSTDIR\${name}" w
  FileWrite $0 "Sample content of ${name}$\r$\n"
  FileClose $0
!macroend

Section
  SetShellVarContext all

  SetOutPath "$INSTDIR"
  File "/oname=Norvane Clipwright X.exe" "${PROGRAMS}/sample-program.exe"
  !insertmacro SampleFile "ClipCore.dll"
  !insertmacro SampleFile "Render.dll"
  CreateDirectory "$INSTDIR\Languages"
  !insertmacro SampleFile "Languages\日本語.lng"
  CreateDirectory "$INSTDIR\Effects\Titles"
  !insertmacro SampleFile "Effects\Titles\Lower Third.ncfx"
  !insertmacro SampleFile "Effects\Golden Hour.ncfx"

  SetOutPath "$INSTDIR\Uninstaller"
  File "${SHIPPED}/clipwright-uninstaller.exe"
  File "${SHIPPED}/stand-ins/data_api.dll"
  File "${SHIPPED}/stand-ins/nvUpgrade.dll"

  SetOutPath "$PROGRAMFILES64\Norvane\Norvane Clipwright Update"
  File "/oname=Norvane Clipwright Update.exe" "${PROGRAMS}/sample-update-installer.exe"

  WriteRegStr HKCR "NCPFile" "path" "$INSTDIR"
  WriteRegStr HKLM "SOFTWARE\Norvane\846" "UninstallJumpPage" \
    "https://www.norvane.example/clipwright/goodbye"

  CreateDirectory "$APPDATA\Norvane Clipwright"
  WriteINIStr "$APPDATA\Norvane Clipwright\Clipwright.ini" "System" "ProductID" "8461"
  WriteINIStr "$APPDATA\Norvane Clipwright\Clipwright.ini" "System" "DefInstallLang" "ENG"
  WriteINIStr "$APPDATA\Norvane Clipwright\Clipwright.ini" "Product" "ProductID" "846"
  WriteINIStr "$APPDATA\Norvane Clipwright\Clipwright.ini" "Product" "Version" "7.2.1.4"
  WriteINIStr "$APPDATA\Norvane Clipwright\KConfig.ini" "Uid" "Uid" "20260417"
  WriteINIStr "$APPDATA\Norvane Clipwright\KConfig.ini" "AccountInfo" "Email" "robin@mail.example"

  WriteUninstaller "$INSTDIR\unins000.exe"
  FileOpen $0 "$INSTDIR\unins000.dat" w
  FileWrite $0 "3000"
  FileClose $0
SectionEnd

Section Uninstall
  ${GetParameters} $1
  CreateDirectory "$PROFILE\Received"
  FileOpen $0 "$PROFILE\Received\uninstaller.txt" w
  FileWrite $0 "$1"
  FileClose $0

  FileOpen $0 "$INSTDIR\unins000.dat" r
  FileRead $0 $2
  FileClose $0
  Sleep $2

  ClearErrors
  ${GetOptions} $1 "/DELRESOURCE" $3
  IfErrors keep_resources
  RMDir /r "$INSTDIR\Effects"
keep_resources:
  Delete "$INSTDIR\*.*"
  RMDir /r "$INSTDIR\Languages"
  RMDir /r "$INSTDIR\Uninstaller"
  RMDir "$INSTDIR"
  DeleteRegKey HKCR "NCPFile"

  FileOpen $0 "$PROFILE\Received\removed.txt" w
  FileClose $0
SectionEnd
