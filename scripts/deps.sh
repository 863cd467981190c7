# Debian packages the build needs (and the checks of its installation and
# package); sourced by scripts/run and scripts/test.
KV_PACKAGES=(build-essential cmake ninja-build pkg-config qt6-base-dev qt6-base-dev-tools libgl-dev
             libgtest-dev libgmock-dev libbenchmark-dev libstb-dev zlib1g-dev xvfb xauth
             desktop-file-utils appstream libxml2-utils shared-mime-info libglib2.0-bin man-db file dpkg-dev
             xdotool)

kv_install_deps() {
  local missing=()
  for p in "${KV_PACKAGES[@]}"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -q
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q "${missing[@]}"
  fi
}

kv_build() {
  local dir="$1"; shift
  cmake -S "$KV_ROOT" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
  cmake --build "$dir" -j 2
}
