# A fresh Debian 12 in a folder, for the tests beside this file, which source it. They run as root.
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
[ "$(id -u)" -eq 0 ] || { echo "$0: root alone can make a machine in a folder." >&2; exit 1; }
kept=$PWD/build/package/debian.tar  # the same for every machine
packages=$PWD/build/packages
machine=$(mktemp -d /tmp/dashcam-machine.XXXXXX)
nspawn='' init=''
trap shut_down EXIT
trap 'exit 1' INT TERM HUP

fail() {
  echo "$0: $*" >&2
  [ ! -s "$machine.log" ] || tail -20 "$machine.log" >&2
  exit 1
}

# wait_for SECONDS COMMAND...: until it succeeds
wait_for() {
  local end=$((SECONDS + $1))
  until "${@:2}" 2>/dev/null; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.1
  done
}

make_machine() {
  if [ ! -e "$kept" ]; then
    local site
    site=$(apt-get indextargets --format '$(RELEASE) $(REPO_URI)' | awk '$1 == "bookworm" && !found++ { print $2 }')
    mkdir -p "$(dirname "$kept")"
    mmdebstrap --quiet --variant=minbase --include=systemd-sysv,dbus,passwd,procps --format=tar bookworm "$kept.part" \
      "deb ${site:-http://deb.debian.org/debian} bookworm main"
    mv "$kept.part" "$kept"
  fi
  tar -xf "$kept" -C "$machine"
}

# in_folder COMMAND...: there without a boot, with this machine's network
folder=(--quiet -D "$machine" --register=no --keep-unit --pipe --resolv-conf=copy-host --bind-ro="$packages"
  --setenv=DEBIAN_FRONTEND=noninteractive)
in_folder() { systemd-nspawn "${folder[@]}" "$@" </dev/null 2> >(grep -v 'Attempted to remove disk file system' >&2); }

boot() {
  local loop devices=()
  for loop in /dev/loop-control /dev/loop[0-9]*; do devices+=(--bind="$loop"); done
  systemd-nspawn -D "$machine" --register=no --keep-unit --private-network --console=read-only --bind-ro="$packages" \
    "${devices[@]}" -b </dev/null >"$machine.log" 2>&1 &
  nspawn=$!
  wait_for 60 first_process || fail "the machine does not start"
  wait_for 120 in_machine systemctl is-active --quiet multi-user.target || fail "the machine does not boot"
}
first_process() { init=$(pgrep -P "$nspawn"); }

# in_machine COMMAND...: there while it is booted
in_machine() {
  nsenter -t "$init" --mount --uts --ipc --net --pid --root --wd=/ env DEBIAN_FRONTEND=noninteractive "$@" </dev/null
}

shut_down() {
  if [ -n "$nspawn" ]; then
    if [ -n "$init" ]; then in_machine systemctl poweroff 2>/dev/null || true; else kill "$nspawn" || true; fi
    wait_for 60 has_ended || kill -KILL "$nspawn"
    wait "$nspawn" || true
  fi
  rm -rf "$machine" "$machine".*
  rmdir "/run/systemd/nspawn/propagate/${machine##*/}" 2>/dev/null || true
}
has_ended() { ! kill -0 "$nspawn"; }

# All files but those of the kernel, of apt and dpkg, and what a running system writes of itself.
list_files() {
  (cd "$machine" && find . -xdev \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./run -o -path ./tmp -o -path ./var/cache \
    -o -path ./var/log -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./var/tmp \
    -o -path ./etc/ld.so.cache -o -path ./etc/resolv.conf \) -prune -o -print | LC_ALL=C sort)
}
