"""The other monitors: command, desktop, and how to read their rates."""

import json
from dataclasses import dataclass, field
from types import SimpleNamespace
from typing import Callable, Optional

import apart
import readings
import sway
import waybar
import xfce
from tray import BARE

_NO_DISPLAY = SimpleNamespace(start=lambda: None, close=lambda: None)
TERMINAL = SimpleNamespace(**{**vars(BARE), "PROGRAMS": [], "DISPLAY": SimpleNamespace(
    Display=lambda *_: _NO_DISPLAY, SESSION_TYPE="tty")})


class _Sway(sway.Display):
    WRAPPER = apart.AS_USER


_WAYBAR = SimpleNamespace(**{**vars(waybar), "DISPLAY": SimpleNamespace(
    Display=_Sway, SESSION_TYPE=sway.SESSION_TYPE)})

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


@dataclass(frozen=True)
class Peer:
    """In `command`, `ask` and a file's text "{}" and "{0}" are the folders of configuration and state."""

    package: str
    desktop: object
    command: str
    # Of the configuration: its name and text.
    file: tuple = ()
    interval: str = "1 s"
    terminal: bool = False
    # Reads what it printed, or what `ask`, run afterwards, prints.
    parse: Optional[Callable] = None
    ask: str = ""
    ask_seconds: int = 30
    # The first readings, which do not count.
    skip: int = 0


def _netload(home, configure):
    """The session's panel, with the plugin at its right end."""
    configure(home)
    file = home / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
    last, plugin = '<value type="int" value="4"/>', '    <property name="plugin-4"'
    text = file.read_text().replace(last, f'{last}\n        {last.replace("4", "5")}')
    file.write_text(text.replace(
        plugin, f'    <property name="plugin-5" type="string" value="netload"/>\n{plugin}'))
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


# The package, the desktop, and what is put into its panel.
PANELS = {
    "Xfce panel": ("xfce4-panel", xfce, None),
    "Xfce panel with netload": ("xfce4-netload-plugin", xfce, _netload),
    "Waybar": ("waybar", _WAYBAR, None),
    "Waybar with its network module": ("waybar", _WAYBAR, _waybar_network),
}

PEERS = {
    "conky": Peer("conky-std", BARE, "conky -c {}/conky", ("conky", _CONKY), parse=readings.conky),
    "polybar": Peer("polybar", BARE, "polybar -q -c {}/polybar top", ("polybar", _POLYBAR),
                    parse=readings.polybar, ask="stdbuf -oL polybar -q -s -c {}/polybar top",
                    ask_seconds=14, skip=3),
    "gkrellm": Peer("gkrellm", BARE, "gkrellm", interval="10 a second, all its meters"),
    "nethogs": Peer("nethogs", TERMINAL, "stdbuf -oL nethogs -t -C -d 1 eth0",
                    parse=readings.nethogs),
    "bwm-ng": Peer("bwm-ng", TERMINAL, "bwm-ng -o csv -t 1000 -u bytes -I eth0",
                   parse=readings.bwm_ng),
    "vnstatd": Peer("vnstat", TERMINAL, "vnstatd -n --config {}/vnstat", ("vnstat", _VNSTAT),
                    interval="20 s, to its database", parse=readings.vnstat,
                    ask="sh -c 'for i in 1 2 3; do"
                        " vnstat --config {}/vnstat -i eth0 -tr 3 --json; done'"),
    "btop": Peer("btop", TERMINAL, "btop --utf-force", ("btop/btop.conf", _BTOP),
                 interval="1 s, its network box alone", terminal=True),
    "gnome-system-monitor": Peer("gnome-system-monitor", BARE, "gnome-system-monitor --resources",
                                 interval="its own, all graphs of its page"),
}
