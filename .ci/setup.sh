# Shared by ./run, ./test, ./bench, docs/make_screenshots.sh and the scripts in .ci: the Debian packages and how to
# install them. Sourced, not run.

run_packages=(g++ cmake ninja-build qt6-base-dev libcli11-dev qt6-wayland fonts-dejavu-core)
test_packages=("${run_packages[@]}" libgtest-dev chromium dbus-daemon fish groff-base zsh)
bench_packages=("${run_packages[@]}" libbenchmark-dev sqlite3 time)
picture_packages=(librsvg2-bin icoutils)
windows_packages=(cmake ninja-build g++-mingw-w64-x86-64-posix googletest wine64)
check_packages=("${test_packages[@]}" "${bench_packages[@]}" clang clang-format clang-tidy libclang-rt-14-dev)

root=$(CDPATH="" cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# install_missing PACKAGE...: installs the missing packages; without permission, prints the line that installs them.
install_missing() {
  local package missing=()
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  local become=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! { sudo -n true 2>/dev/null || { [ -t 0 ] && sudo true; }; }; then
      echo "Some packages are missing. Install them as root with this line, then try again:" >&2
      echo "apt-get update && apt-get install --no-install-recommends ${missing[*]}" >&2
      return 1
    fi
    become=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${become[@]}" apt-get update -qq
  "${become[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [CMAKE OPTION...]: configures and builds in build/PRESET.
build() {
  local preset=$1
  shift
  (cd "$root" && cmake --preset "$preset" "$@" >/dev/null && cmake --build --preset "$preset" --parallel)
}
