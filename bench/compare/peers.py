"""The other monitors: what each is run as, in what desktop, and how its rates are read."""

import json
from dataclasses import dataclass, field
from typing import Callable, Optional

import desktops
import readings

_CONKY = """conky.config = {
  update_interval = 1, out_to_x = true, out_to_console = true, own_window = true,
  own_window_type = 'dock', double_buffer = true, font = 'DejaVu Sans:size=10',
}
conky.text = [[net ${downspeedf eth0} ${upspeedf eth0}]]
"""

_POLYBAR = """[bar/top]
width = 100%
height = 24
font-0 = DejaVu Sans:size=10
modules-right = net
[module/net]
type = internal/network
interface = eth0
interface-type = wired
interval = 1
label-connected = net %downspeed% %upspeed%
"""

_VNSTAT = """Interface "eth0"
DatabaseDir "{0}"
UseLogging 0
TimeSyncWait 0
UpdateFileOwner 0
"""

_BTOP = """shown_boxes = "net"
update_ms = 1000
net_iface = "eth0"
"""

DRAWN = "drawn only, not readable by a program"


@dataclass(frozen=True)
class Peer:
    """`files` go into the configuration's folder, in whose place in the command stands "{}"."""

    package: str
    desktop: object
    command: list
    files: dict = field(default_factory=dict)
    interval: str = "1 s"
    terminal: bool = False
    # How to read what it printed, or what `ask`, run afterwards, prints.
    parse: Optional[Callable] = None
    ask: Optional[list] = None
    ask_seconds: int = 30
    # So many are no readings yet.
    skip: int = 0


def _netload(home, configure):
    """The session's panel, with the plugin at its right end."""
    configure(home)
    file = home / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
    text = file.read_text()
    text = text.replace('<value type="int" value="4"/>',
                        '<value type="int" value="4"/>\n        <value type="int" value="5"/>')
    text = text.replace('    <property name="plugin-4"',
                        '    <property name="plugin-5" type="string" value="netload"/>\n'
                        '    <property name="plugin-4"')
    file.write_text(text)
    (home / "xfce4/panel").mkdir(parents=True)
    (home / "xfce4/panel/netload-5.rc").write_text(
        "Use_Label=false\nShow_Values=true\nShow_Bars=true\nNetwork_Device=eth0\n"
        "Update_Interval=1000\n")


def _waybar_network(home, configure):
    """The session's bar, with the module at its right end."""
    configure(home)
    file = home / "waybar/config"
    configuration = json.loads(file.read_text())
    configuration["modules-right"].append("network")
    configuration["network"] = {"interface": "eth0", "interval": 1,
                                "format": "{bandwidthDownBytes} {bandwidthUpBytes}"}
    file.write_text(json.dumps(configuration))


# Panels: which desktop, and what is put into it.
PANELS = {
    "Xfce panel": ("xfce4-panel", desktops.XFCE, None),
    "Xfce panel with netload": ("xfce4-netload-plugin", desktops.XFCE, _netload),
    "Waybar": ("waybar", desktops.WAYBAR, None),
    "Waybar with its network module": ("waybar", desktops.WAYBAR, _waybar_network),
}

PEERS = {
    "conky": Peer("conky-std", desktops.X, ["conky", "-c", "{}/conky"], {"conky": _CONKY},
                  parse=readings.conky),
    "polybar": Peer("polybar", desktops.X, ["polybar", "-q", "-c", "{}/polybar", "top"],
                    {"polybar": _POLYBAR}, parse=readings.polybar, ask_seconds=14, skip=3,
                    ask=["stdbuf", "-oL", "polybar", "-q", "-s", "-c", "{}/polybar", "top"]),
    "gkrellm": Peer("gkrellm", desktops.X, ["gkrellm"], interval="10 a second, all its meters"),
    "nethogs": Peer("nethogs", desktops.TERMINAL, ["stdbuf", "-oL", "nethogs", "-t", "-C", "-d", "1",
                                                "eth0"], parse=readings.nethogs),
    "bwm-ng": Peer("bwm-ng", desktops.TERMINAL, ["bwm-ng", "-o", "csv", "-t", "1000", "-u", "bytes",
                                              "-I", "eth0"], parse=readings.bwm_ng),
    "vnstatd": Peer("vnstat", desktops.TERMINAL, ["vnstatd", "-n", "--config", "{}/vnstat"],
                    {"vnstat": _VNSTAT}, interval="20 s, to its database",
                    parse=readings.vnstat,
                    ask=["sh", "-c", "for i in 1 2 3; do vnstat --config $0 -i eth0 -tr 3 --json;"
                         " done", "{}/vnstat"]),
    "btop": Peer("btop", desktops.TERMINAL, ["btop", "--utf-force"], {"btop/btop.conf": _BTOP},
                 interval="1 s, its network box alone", terminal=True),
    "gnome-system-monitor": Peer("gnome-system-monitor", desktops.X,
                                 ["gnome-system-monitor", "--resources"],
                                 interval="its own, all graphs of its page"),
}
