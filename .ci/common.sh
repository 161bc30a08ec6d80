# Helpers the CI stages share; sourced, not run.

SUDO=; [ "$(id -u)" -ne 0 ] && SUDO=sudo
export DEBIAN_FRONTEND=noninteractive

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'; }

apt_install() {
  local missing=()
  for p in "$@"; do installed "$p" || missing+=("$p"); done
  ((${#missing[@]})) || return 0
  echo "installing: ${missing[*]}"
  $SUDO apt-get update -qq || echo "apt-get update failed; trying the install anyway"
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# A 93-byte i386 ELF program that exits 0: whether this kernel runs 32-bit
# code at all (some virtual machines do not).
kernel_runs_i386() {
  local probe
  probe=$(mktemp)
  printf '\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00\x01\x00\x00\x00\x54\x80\x04\x08\x34\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x34\x00\x20\x00\x01\x00\x00\x00\x00\x00\x00\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00\x80\x04\x08\x00\x80\x04\x08\x5d\x00\x00\x00\x5d\x00\x00\x00\x05\x00\x00\x00\x00\x10\x00\x00\x31\xdb\xb8\x01\x00\x00\x00\xcd\x80' >"$probe"
  chmod +x "$probe"
  local rc=0
  "$probe" 2>/dev/null || rc=$?
  rm -f "$probe"
  return $rc
}
