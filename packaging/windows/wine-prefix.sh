# To be sourced: what every use of Wine here agrees on.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
wine_folder=${CLIPWRIGHT_WINE_FOLDER:-$here/../../build/wine}

export WINEDEBUG=${WINEDEBUG:--all}
export WINEARCH=win64
# Neither offers to download what nobody needs here, nor menu entries in the developer's desktop.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
# File names are UTF-8 for Wine only in a locale that says so.
export LC_ALL=C.UTF-8

# make_prefix FOLDER: a Wine prefix, made once and copied.
make_prefix() {
  local prefix=$1
  [ ! -d "$prefix" ] || return 0
  mkdir -p "$wine_folder"
  (
    flock 9
    if [ ! -d "$wine_folder/template" ]; then
      rm -rf "$wine_folder/template.part"
      WINEPREFIX=$wine_folder/template.part wineboot --init </dev/null >/dev/null 2>&1
      # By itself this Wine passes for Windows 7.
      WINEPREFIX=$wine_folder/template.part wine winecfg -v win10 </dev/null >/dev/null 2>&1
      # A crash is an exit code, not a dialog.
      WINEPREFIX=$wine_folder/template.part wine reg add 'HKCU\Software\Wine\WineDbg' \
        /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
      WINEPREFIX=$wine_folder/template.part wineserver --wait
      mv -T "$wine_folder/template.part" "$wine_folder/template"
    fi
    rm -rf "$prefix.part"
    cp -a "$wine_folder/template" "$prefix.part"
    mv -T "$prefix.part" "$prefix"
  ) 9>"$wine_folder/template.lock"
}

# run_in_prefix FOLDER COMMAND...: runs it there; its background processes hold no output open.
run_in_prefix() {
  local prefix=$1 code=0
  shift
  WINEPREFIX=$prefix "$@" </dev/null >"$prefix.output" 2>&1 || code=$?
  cat "$prefix.output"
  return $code
}
