# Shared by the scripts: where we are, and how to get what a fresh Debian machine lacks.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# install PACKAGE...: installs those packages that are missing, as root or through sudo.
install() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "These packages are missing: ${missing[*]}. Install them as root, or install sudo." >&2
      exit 1
    }
    sudo=(sudo)
  fi
  echo "Installing ${missing[*]}" >&2
  # The lists of a fresh machine may be empty or old: fetch them once, when the first try fails.
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends \
      "${missing[@]}" >/dev/null 2>&1 || {
    "${sudo[@]}" apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends \
        "${missing[@]}" >/dev/null
  }
}

# install_native: compiler and libraries of the native build.
install_native() {
  install g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libgtest-dev libgmock-dev \
      libbenchmark-dev
}

# build PRESET ARGUMENTS...: configures and builds, and prints the tools' output only when they fail.
build() {
  local preset=$1
  shift
  mkdir -p build
  echo "Building $preset ..." >&2
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "$@"; } >"build/$preset.log" 2>&1; then
    cat "build/$preset.log" >&2
    exit 1
  fi
}
