# To be sourced: fetches source packages from where the machine takes its packages, without touching
# its lists.

# source_lists FOLDER: makes the lists in it, for fetch_source.
source_lists() {
  local list apt=$1
  mkdir -p "$apt/parts" "$apt/state/lists/partial" "$apt/cache/archives/partial"
  shopt -s nullglob
  for list in /etc/apt/sources.list.d/*.sources; do
    sed 's/^Types:.*/Types: deb-src/' "$list" >"$apt/parts/$(basename "$list")"
  done
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$list" ] || sed -n 's/^deb\([[:space:]]\)/deb-src\1/p' "$list" \
      >"$apt/parts/$(basename "$list" .list).list"
  done
  cat >"$apt/apt.conf" <<CONF
Dir::Etc::SourceList "/dev/null";
Dir::Etc::SourceParts "$apt/parts";
Dir::State "$apt/state";
Dir::State::status "/var/lib/dpkg/status";
Dir::Cache "$apt/cache";
APT::Sandbox::User "root";
Acquire::Languages "none";
CONF
  export APT_CONFIG=$apt/apt.conf
  apt-get update -q
}

# fetch_source PACKAGE VERSION [OPTION OF apt-get source...]: into the current folder
fetch_source() {
  local package=$1 version=$2
  shift 2
  apt-get source -q --download-only --only-source "$@" "$package=$version"
}
