# To be sourced: what every use of Wine here agrees on.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
wine_folder=${CLIPWRIGHT_WINE_FOLDER:-$here/../../build/wine}

export WINEDEBUG=${WINEDEBUG:--all}
export WINEARCH=win64
export WINEDLLPATH=$wine_folder/dlls # for programs of 32 bits
# No offer to download Mono and Gecko, which nothing here needs, and no menu entries in the
# developer's desktop.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
# File names are UTF-8 for Wine only in a locale that says so.
export LC_ALL=C.UTF-8

# make_prefix FOLDER: a Wine prefix, made once and copied.
make_prefix() {
  local prefix=$1
  [ ! -d "$prefix" ] || return 0
  mkdir -p "$wine_folder"
  # A shell of its own: its errors end it, whatever the caller's settings are, and however it asks.
  CLIPWRIGHT_WINE_FOLDER=$wine_folder bash -euo pipefail -c \
    '. "$0"; copy_of_template "$1"' "$here/wine-prefix.sh" "$prefix" || {
    echo "cannot make the Wine prefix $prefix; see $wine_folder/template.txt" >&2
    return 1
  }
}

# copy_of_template FOLDER: to be called where errors end the shell.
copy_of_template() {
  local prefix=$1
  exec 9>"$wine_folder/template.lock"
  flock 9
  [ -d "$wine_folder/template" ] || make_template >"$wine_folder/template.txt" 2>&1 9>&- </dev/null
  rm -rf "$prefix.part"
  mkdir -p "$prefix.part/drive_c/windows"
  # Nothing writes into the system's own files, which are most of a prefix. Links need one disk.
  cp -al "$wine_folder"/template/drive_c/windows/sys{tem32,wow64} "$prefix.part/drive_c/windows/" \
    2>/dev/null || true
  cp -a --update=none "$wine_folder/template/." "$prefix.part"
  mv -T "$prefix.part" "$prefix"
}

make_template() {
  export WINEPREFIX=$wine_folder/template.part
  rm -rf "$WINEPREFIX"
  ln -sfn "$("$here/wow64")" "$WINEDLLPATH"
  wineboot --init
  # A crash is an exit code, not a dialog.
  wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
  wineserver --wait
  mv -T "$WINEPREFIX" "$wine_folder/template"
  unset WINEPREFIX
}

# end_prefixes: ends every program in the prefixes that there are, and their servers.
end_prefixes() {
  local prefix
  for prefix in "$wine_folder"/*/; do
    [ ! -d "$prefix/drive_c" ] || WINEPREFIX=${prefix%/} wineserver --kill 2>/dev/null || true
  done
}

# run_in_prefix FOLDER COMMAND...: runs it there; its background processes hold no output open.
run_in_prefix() {
  local prefix=$1 code=0
  shift
  WINEPREFIX=$prefix "$@" </dev/null >"$prefix.output" 2>&1 || code=$?
  cat "$prefix.output"
  return $code
}
