# Windows programs on this machine: a small 32-bit Debian system with Wine in a folder of its own. To be sourced after
# common.sh. The folder is $ZELK_WINE_ROOT, else /opt/zelk-wine32; it is made when it is missing and kept.
wine_root=${ZELK_WINE_ROOT:-/opt/zelk-wine32}
wine_prefix=/root/.wine-zelk
wine_run_folder=

# in_wine_root COMMAND...: runs the command in the root as its own system. What is mounted for it is seen by it alone and
# goes with it.
in_wine_root() {
  # The lock (start_wine) is this script's, not that of a server that outlives it.
  unshare --mount -- bash -c '
    exec 9>&-
    root=$1; shift
    mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
    mountpoint -q "$root/dev" || mount --bind /dev "$root/dev"
    exec chroot "$root" "$@"' in_wine_root "$wine_root" \
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C DEBIAN_FRONTEND=noninteractive \
    WINEPREFIX=$wine_prefix WINEDEBUG=-all "$@"
}

# make_wine_root: makes the root where there is none. Fails with the reason on standard output.
make_wine_root() {
  if [ "$(id -u)" -ne 0 ]; then
    echo "only root may change the root folder of a program"
    return 1
  fi
  if ! unshare --mount true 2>/dev/null; then
    echo "this machine does not let its root user mount anything"
    return 1
  fi
  [ -e "$wine_root/usr/lib/wine/wineserver32" ] && return
  local log=build/wine-root.log mirror
  mkdir -p build "$(dirname "$wine_root")" || {
    echo "its folder cannot be made"
    return 1
  }
  (install debootstrap) >&2 || {
    echo "debootstrap cannot be installed"
    return 1
  }
  echo "Making a 32-bit system with Wine in $wine_root ..." >&2
  mirror=$(sed -nE 's/^(URIs:|deb( \[[^]]*\])?) +(https?:[^ ]+debian)\/?( .*)?$/\3/p' /etc/apt/sources.list \
    /etc/apt/sources.list.d/* 2>/dev/null | head -1) || true
  local unfinished=$wine_root.unfinished
  rm -rf --one-file-system "$unfinished"
  # dpkg need not make sure that every file has reached the disk: an interrupted root is made anew.
  mkdir -p "$unfinished/etc/dpkg/dpkg.cfg.d"
  echo force-unsafe-io >"$unfinished/etc/dpkg/dpkg.cfg.d/unsafe-io"
  unshare --mount debootstrap --arch=i386 --variant=minbase bookworm "$unfinished" \
    ${mirror:+"$mirror"} >"$log" 2>&1 &&
    wine_root=$unfinished in_wine_root apt-get install -qq -y --no-install-recommends wine wine32 >>"$log" 2>&1 &&
    rm -rf "$unfinished"/var/cache/apt/archives/*.deb &&
    mv "$unfinished" "$wine_root" || {
      echo "it cannot be made, see $log: $(tail -1 "$log")"
      return 1
    }
}

# start_services: whether Windows' services run. They end with the last program, and each program would start them
# anew, the one for remote procedure calls for up to half a minute; so one program that does nothing stays. No pipe here:
# the services would keep it open.
start_services() {
  local log=$wine_run_folder/services.log end=$((SECONDS + 40))
  in_wine_root wine ping -n 36000 127.0.0.1 >/dev/null 2>&1 </dev/null &
  while ((SECONDS < end)); do
    # A command that comes while others start finds their list locked.
    in_wine_root wine net start RpcSs >"$log" 2>&1 </dev/null || true
    ! grep -qE "already running|successfully started" "$log" || return 0
    sleep 1
  done
  echo "wine: the service for remote procedure calls does not start: $(tail -1 "$log")" >&2
  return 1
}

# start_wine FILE...: a folder in the root with these files in it, the current one of the programs that `wine` runs. One
# run at a time has the root.
start_wine() {
  exec 9>"$wine_root/.zelk-lock"
  flock 9
  wine_run_folder=$(mktemp -d "$wine_root/tmp/zelk-XXXXXX")
  trap stop_wine EXIT
  cp -rL "$@" "$wine_run_folder"
  # The first time this sets Windows up. Services that still run then, or end, would be taken for those to come.
  in_wine_root mkdir -p "$wine_prefix"
  in_wine_root wineboot --init >/dev/null 2>&1
  local try
  for try in 1 2 3; do
    in_wine_root wineserver -k || true
    ! start_services || break
  done
}

stop_wine() {
  in_wine_root wineserver -k || true
  rm -rf --one-file-system "$wine_run_folder"
}

# wine PROGRAM ARGUMENTS...: runs it in the folder.
wine() {
  in_wine_root bash -c 'cd "$1" && shift && exec wine "$@"' wine "${wine_run_folder#"$wine_root"}" "$@"
}
