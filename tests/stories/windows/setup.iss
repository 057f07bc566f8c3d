; A setup of the sample product for runs of the wizard on Windows, made with Inno Setup:
;
;   ISCC.exe /DPROGRAMS=<folder with the built programs> /DSHIPPED=<folder of the unpacked zip>
;     /DAPP=<its id> /O<folder> /F<name> setup.iss
;
; Setups with different ids, installed over each other, leave uninstallers with different numbers.
; The uninstaller notes its parameters in Received\uninstaller.txt of the profile, fails while
; ClipCore.dll is in use, and removes the effect resources only with /DELRESOURCE. What is in use it
; has removed at the next start of Windows: the running wizard.
#define Data "{commonappdata}\Norvane Clipwright"
#define Ini Data + "\Clipwright.ini"
#define AccountIni Data + "\KConfig.ini"

[Setup]
AppId={#APP}
AppName=Norvane Clipwright
AppVersion=7.2.1.4
AppPublisher=Norvane
DefaultDirName={autopf}\Norvane\Norvane Clipwright
DefaultGroupName=Norvane Clipwright
ArchitecturesAllowed=x64compatible
ArchitecturesInstallIn64BitMode=x64compatible
PrivilegesRequired=admin
Compression=none

[Dirs]
Name: "{app}\Languages"
Name: "{app}\Effects\Titles"; Flags: uninsneveruninstall

[Files]
Source: "{#PROGRAMS}\sample-program.exe"; DestDir: "{app}"; DestName: "Norvane Clipwright X.exe"
Source: "{#SHIPPED}\clipwright-uninstaller.exe"; DestDir: "{app}\Uninstaller"; Flags: ignoreversion uninsrestartdelete
Source: "{#SHIPPED}\stand-ins\data_api.dll"; DestDir: "{app}\Uninstaller"; Flags: ignoreversion uninsrestartdelete
Source: "{#SHIPPED}\stand-ins\nvUpgrade.dll"; DestDir: "{app}\Uninstaller"; Flags: ignoreversion uninsrestartdelete
Source: "{#PROGRAMS}\sample-update-installer.exe"; DestDir: "{app} Update"; DestName: "Norvane Clipwright Update.exe"; Flags: uninsneveruninstall
Source: "{#SourcePath}\setup.iss"; DestDir: "{app}"; DestName: "ClipCore.dll"
Source: "{#SourcePath}\setup.iss"; DestDir: "{app}\Languages"; DestName: "日本語.lng"
Source: "{#SourcePath}\setup.iss"; DestDir: "{app}\Effects"; DestName: "Golden Hour.ncfx"; Flags: uninsneveruninstall
Source: "{#SourcePath}\setup.iss"; DestDir: "{app}\Effects\Titles"; DestName: "Lower Third.ncfx"; Flags: uninsneveruninstall

[Icons]
Name: "{group}\Norvane Clipwright"; Filename: "{app}\Norvane Clipwright X.exe"

[Registry]
Root: HKCR; Subkey: "NCPFile"; ValueType: string; ValueName: "path"; ValueData: "{app}"; Flags: uninsdeletekey
Root: HKLM; Subkey: "SOFTWARE\Norvane\846"; ValueType: string; ValueName: "UninstallJumpPage"; ValueData: "https://www.norvane.example/clipwright/goodbye"

[INI]
Filename: "{#Ini}"; Section: "System"; Key: "ProductID"; String: "8461"
Filename: "{#Ini}"; Section: "System"; Key: "DefInstallLang"; String: "ENG"
Filename: "{#Ini}"; Section: "Product"; Key: "ProductID"; String: "846"
Filename: "{#Ini}"; Section: "Product"; Key: "Version"; String: "7.2.1.4"
Filename: "{#AccountIni}"; Section: "Uid"; Key: "Uid"; String: "20260417"
Filename: "{#AccountIni}"; Section: "AccountInfo"; Key: "Email"; String: "robin@mail.example"

[Code]
// Without those that the first process adds for its copy in the temporary folder.
function OwnParameters: String;
var
  i: Integer;
begin
  for i := 1 to ParamCount do
    if (Pos('/SECONDPHASE=', ParamStr(i)) = 0) and (Pos('/FIRSTPHASEWND=', ParamStr(i)) = 0) and
       (Pos('/INITPROCWND=', ParamStr(i)) = 0) then
      Result := Result + ParamStr(i) + ' ';
end;

function InitializeUninstall: Boolean;
begin
  ForceDirectories(GetEnv('USERPROFILE') + '\Received');
  SaveStringToFile(GetEnv('USERPROFILE') + '\Received\uninstaller.txt', OwnParameters, False);
  try
    TFileStream.Create(ExpandConstant('{app}\ClipCore.dll'), fmOpenReadWrite or fmShareExclusive).Free;
    Result := True;
  except
    Result := False;
  end;
end;

procedure CurUninstallStepChanged(step: TUninstallStep);
begin
  if (step = usPostUninstall) and (Pos('/DELRESOURCE', OwnParameters) > 0) then
    DelTree(ExpandConstant('{app}\Effects'), True, True, True);
end;
