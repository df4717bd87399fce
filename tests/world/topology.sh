# shellcheck shell=bash disable=SC2154
# Making and removing a world; sourced by `world`, which sets user, router, net and state.

checkMachine() {
  local reason='' space=tidewell-check-$$
  if ((EUID != 0)); then
    reason='it takes root'
  elif ! command -v ip tc nft unshare >/dev/null; then
    reason='ip, tc or nft is missing'
  elif ! ip netns add "$space" 2>/dev/null; then
    reason='this machine makes no network namespaces'
  else
    ip netns exec "$space" sh -e -c '
      ip link add veth0 type veth peer name veth1
      tc qdisc add dev veth0 root tbf rate 1mbit burst 16k latency 50ms
      ip tuntap add dev tun0 mode tun
      nft add table inet check' 2>/dev/null || reason='no veth, tbf, tun or nftables here'
    ip netns del "$space"
  fi
  if [[ $reason ]]; then
    echo "no test world on this machine: $reason"
    exit 77
  fi
}

# Arguments: the interface's number, 0 or 1. The user's end is eth, the router's end lan.
addLink() {
  local i=$1
  ip link add "eth$i" netns "$user" type veth peer name "lan$i" netns "$router"
  ip -n "$router" link set "lan$i" up
  ip -n "$user" link set "eth$i" up
  # Addresses set before the carrier ignore IPv6 neighbours for a second.
  ip -n "$router" -batch - <<END
address add 192.168.$((i + 1)).1/24 dev lan$i
address add fd00:$((i + 1))::1/64 dev lan$i nodad
END
  ip -n "$user" -batch - <<END
address add 192.168.$((i + 1)).2/24 dev eth$i
address add fd00:$((i + 1))::2/64 dev eth$i nodad
END
}

# The user's default routes over the present link, and the routes back to its permanent addresses.
addRoutes() {
  local i
  i=$(<"$state/link")
  # The length of a queue depends on the congestion control, whose default differs between machines.
  ip -n "$user" route replace default via "192.168.$((i + 1)).1" congctl cubic
  ip -n "$user" -6 route replace default via "fd00:$((i + 1))::1" congctl cubic
  ip -n "$router" route replace 203.0.113.2 via "192.168.$((i + 1)).2"
  ip -n "$router" -6 route replace 2001:db8:113::2 via "fd00:$((i + 1))::2"
}

configureSpaces() {
  local space
  for space in "$user" "$router" "$net"; do
    ip netns add "$space"
    # Addresses are usable at once and no router is searched for, so an idle link is silent.
    ip netns exec "$space" sysctl -qw net.ipv6.conf.all.accept_dad=0 \
      net.ipv6.conf.default.accept_dad=0 net.ipv6.conf.default.router_solicitations=0
    ip -n "$space" link set lo up
  done
  # Ordinary users may ping, and addresses survive while a link is down.
  ip netns exec "$user" sysctl -qw net.ipv4.ping_group_range='0 2147483647' \
    net.ipv6.conf.all.keep_addr_on_down=1
  ip netns exec "$router" sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1 \
    net.ipv6.conf.all.keep_addr_on_down=1 net.ipv4.conf.all.rp_filter=0 \
    net.ipv4.conf.default.rp_filter=0
  # All probes of a flood are answered.
  ip netns exec "$net" sysctl -qw net.ipv4.icmp_ratelimit=0
  for space in "$user" "$net"; do
    ip netns exec "$space" nft -f - <<'END'
table inet world {
  chain input { type filter hook input priority 0; udp dport 9 drop; }
}
END
  done
  ip netns exec "$net" nft add chain inet world probe '{ type filter hook input priority 1; }'
  ip netns exec "$router" nft add table inet world
  ip netns exec "$router" nft add chain inet world probe '{ type filter hook forward priority 0; }'
}

connectNet() {
  ip link add wan netns "$router" type veth peer name eth0 netns "$net"
  ip -n "$router" link set wan up
  ip -n "$net" link set eth0 up
  ip -n "$router" -batch - <<'END'
address add 198.51.100.1/24 dev wan
address add 2001:db8:51::1/64 dev wan nodad
route add default via 198.51.100.2
route add default via 2001:db8:51::2
END
  ip -n "$net" -batch - <<'END'
address add 198.51.100.2/24 dev eth0
address add 2001:db8:51::2/64 dev eth0 nodad
address add 1.1.1.1/32 dev lo
address add 9.9.9.9/32 dev lo
address add 2606:4700:4700::1111/128 dev lo nodad
address add 2620:fe::fe/128 dev lo nodad
route add default via 198.51.100.1 congctl cubic
route add default via 2001:db8:51::1 congctl cubic
END
}

raiseWorld() {
  checkMachine
  removeWorld
  trap removeWorld EXIT # until it is complete
  mkdir -p "$state" "/etc/netns/$user"
  echo 'nameserver 9.9.9.9' >"/etc/netns/$user/resolv.conf"
  # The namespace's hosts file is mounted over /etc/hosts, which minimal systems lack.
  [[ -e /etc/hosts ]] || echo '127.0.0.1 localhost' >/etc/hosts
  echo 0 >"$state/link"
  configureSpaces
  connectNet
  ip -n "$user" address add 203.0.113.2/32 dev lo
  ip -n "$user" address add 2001:db8:113::2/128 dev lo nodad
  addLink 0
  addLink 1
  addRoutes
  rateVerb 100 20
  touch "$state/complete"
  trap - EXIT
}

removeWorld() {
  local space pid
  rm -f "$state/complete"
  for space in "$user" "$router" "$net"; do
    [[ -e /run/netns/$space ]] || continue
    # Processes inside would keep the namespace alive without a name.
    for pid in $(ip netns pids "$space"); do
      kill -KILL "$pid" 2>/dev/null || true
    done
    ip netns del "$space"
  done
  rm -rf "$state" "/etc/netns/$user"
  rmdir --ignore-fail-on-non-empty /run/tidewell-world /etc/netns 2>/dev/null || true
}
