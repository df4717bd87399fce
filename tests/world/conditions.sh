# shellcheck shell=bash disable=SC2154
# Changes of an existing world; sourced by `world`, which sets user, router, net and state.

# Ends with the usage unless every argument is a number.
requireNumbers() {
  local number
  for number in "$@"; do
    [[ $number =~ ^[0-9]+([.][0-9]+)?$ ]] || usage
  done
}

# Bytes are counted as the interfaces count them, with the Ethernet header: 8 Mbit/s are
# 1,000,000 counted bytes per second. Arguments: router's interface, Mbit/s, milliseconds.
shape() {
  # `replace` would keep the old bucket of an existing tbf.
  ip netns exec "$router" tc qdisc del dev "$1" root 2>/dev/null || true
  if [[ $2 != off ]]; then
    # The bucket fills at least once per tick of the kernel, and holds a few full frames.
    local burst
    burst=$(awk -v rate="$2" 'BEGIN { b = rate * 125000 / 200; print int(b < 16384 ? 16384 : b) }')
    ip netns exec "$router" tc qdisc add dev "$1" root tbf rate "${2}mbit" burst "$burst" \
      latency "${3}ms"
  fi
}

rateVerb() {
  local down=${1:-} up=${2:-off} buffer=${3:-50}
  [[ $down == off ]] || requireNumbers "$down" "$up" "$buffer"
  echo "$down $buffer" >"$state/down"
  shape lan0 "$down" "$buffer"
  shape lan1 "$down" "$buffer"
  shape wan "$up" "$buffer"
}

relayProgram() {
  local found
  found=${TIDEWELL_WORLD_TOOLS:-}/delayRelay
  if [[ ! -x $found ]]; then
    # By hand: the most recent build.
    # shellcheck disable=SC2012
    found=$(ls -t "$here"/../../build/*/tests/world/delayRelay 2>/dev/null | head -1)
  fi
  [[ -x $found ]] || { echo 'world: delayRelay is not built' >&2; exit 1; }
  echo "$found"
}

# The relay reads what the router sends into delay0, waits, and writes it back there.
startRelay() {
  [[ ! -e $state/delay ]] || return 0
  local program
  program=$(relayProgram)
  ip -n "$router" tuntap add dev delay0 mode tun
  ip -n "$router" link set delay0 txqueuelen 5000 addrgenmode none up
  ip -n "$router" route add default dev delay0 table 100
  ip -n "$router" -6 route add default dev delay0 table 100
  mkfifo "$state/delay"
  ip netns exec "$router" "$program" delay0 "$state/delay" </dev/null >"$state/relay.log" 2>&1 &
  disown
  until grep -q ready "$state/relay.log"; do
    kill -0 $! 2>/dev/null || { cat "$state/relay.log" >&2; rm "$state/delay"; exit 1; }
    sleep 0.01
  done
}

delayVerb() {
  requireNumbers "${1:-}" "${2:-0}"
  if [[ ! $1 =~ [1-9] ]]; then
    [[ ! -e $state/delay ]] || detour del
    return
  fi
  startRelay
  echo "$1 ${2:-0}" >"$state/delay"
  detour add
}

# Starts or stops routing forwarded packets through the relay.
detour() {
  local family interface
  for family in -4 -6; do
    for interface in lan0 lan1 wan; do
      ip -n "$router" "$family" rule del iif "$interface" lookup 100 2>/dev/null || true
      [[ $1 == del ]] || ip -n "$router" "$family" rule add iif "$interface" lookup 100
    done
  done
}

lossVerb() {
  local chance
  case ${1:-} in
  0) chance='' ;;
  100) chance=drop ;;
  [1-9] | [1-9][0-9]) chance="numgen random mod 100 < $1 drop" ;;
  *) usage ;;
  esac
  ip netns exec "$router" nft flush chain inet world probe
  [[ ! $chance ]] ||
    ip netns exec "$router" nft "add rule inet world probe icmp type echo-request $chance"
}

probeVerb() {
  case ${1:-} in
  reachable) ip netns exec "$net" nft flush chain inet world probe ;;
  unreachable)
    ip netns exec "$net" nft -f - <<'END'
flush chain inet world probe
add rule inet world probe icmp type echo-request drop
END
    ;;
  *) usage ;;
  esac
}

carrierVerb() {
  case ${1:-} in
  on)
    ip -n "$router" link set "lan$(<"$state/link")" up
    addRoutes # the kernel dropped the router's way back with the link
    ;;
  off) ip -n "$router" link set "lan$(<"$state/link")" down ;;
  *) usage ;;
  esac
}

routeVerb() {
  case ${1:-} in
  on) addRoutes ;;
  off)
    ip -n "$user" route del default 2>/dev/null || true
    ip -n "$user" -6 route del default 2>/dev/null || true
    ;;
  *) usage ;;
  esac
}

recreateVerb() {
  requireNumbers "${1:-0}"
  local i down buffer
  i=$(<"$state/link")
  read -r down buffer <"$state/down"
  ip -n "$user" link del "eth$i"
  sleep "${1:-0}"
  addLink "$i"
  shape "lan$i" "$down" "$buffer"
  addRoutes
  # Rules contain names of interfaces, so a detour through the relay remains.
}

switchVerb() {
  echo $((1 - $(<"$state/link"))) >"$state/link"
  addRoutes
}
