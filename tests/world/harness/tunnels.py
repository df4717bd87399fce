"""VPNs: clients on the user's machine and their servers in the net."""

import subprocess

from .session import wait_until

SERVER = "198.51.100.2"


class OpenVpn:
    NAME = "OpenVPN"
    PROGRAMS = ["openvpn"]
    _SHARED = ["--dev", "tun0", "--proto", "udp", "--cipher", "AES-256-CBC", "--secret", "/etc/tunnel.key"]
    ROUTES = {True: ["--redirect-gateway", "def1"], False: ["--route", "10.9.0.0", "255.255.0.0"]}

    def __init__(self, machine, net, dns=None):
        self.machine, self.net = machine, net
        self._client = None
        key = subprocess.run([*net.entry, "openvpn", "--genkey", "secret", "/dev/stdout"], text=True,
                             capture_output=True, check=True).stdout
        for each in (machine, net):
            each.write("/etc/tunnel.key", key)
        net.start("openvpn", *self._SHARED, "--ifconfig", "10.8.0.1", "10.8.0.2")

    def up(self, for_everything):
        self._client = self.machine.start(
            "openvpn", *self._SHARED, "--ifconfig", "10.8.0.2", "10.8.0.1", "--remote", SERVER,
            *self.ROUTES[for_everything])
        wait_until(lambda: "tun0" in self.machine.run("ip", "route"), 10, "the tunnel's routes")

    def down(self):
        self.machine.stop(self._client)


class WgQuick:
    NAME = "wg-quick"
    PROGRAMS = ["wg", "wg-quick", "wireguard-go"]
    ROUTES = {True: "0.0.0.0/0", False: "10.10.0.0/16"}

    def __init__(self, machine, net, dns=None):
        self.machine, self.net = machine, net
        self._dns = f"DNS = {dns}\n" if dns else ""
        self._keys = [self._key() for _ in range(2)]
        self._up(net, 0, "Address = 10.10.0.1/24\nListenPort = 51820\nTable = off\n",
                 "AllowedIPs = 10.10.0.2/32\n")

    def up(self, for_everything):
        self._up(self.machine, 1, f"Address = 10.10.0.2/24\n{self._dns}",
                 f"Endpoint = {SERVER}:51820\nAllowedIPs = {self.ROUTES[for_everything]}\n")

    def down(self):
        self.machine.run("wg-quick", "down", "wg0")

    def _key(self):
        key = self.net.run("wg", "genkey").strip()
        return key, subprocess.run([*self.net.entry, "wg", "pubkey"], input=key, text=True,
                                   capture_output=True, check=True).stdout.strip()

    def _up(self, machine, number, interface, peer):
        machine.write("/etc/wireguard/wg0.conf",
                      f"[Interface]\nPrivateKey = {self._keys[number][0]}\n{interface}"
                      f"[Peer]\nPublicKey = {self._keys[1 - number][1]}\n{peer}")
        machine.run("wg-quick", "up", "wg0")


TUNNELS = [OpenVpn, WgQuick]
