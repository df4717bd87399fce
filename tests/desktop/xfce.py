"""Xfce's panel: a bar at the top with the status notifier area at its right end."""

import glob
from functools import partial
from pathlib import Path
from types import SimpleNamespace

import x11

NAME = "XFCE"
DISPLAY = x11
PROGRAMS = [["xfwm4"]]
PANEL = ["xfce4-panel", "--disable-wm-check"]
BAR, BAR_HEIGHT = "top", 32
arrive = x11.await_bar(BAR_HEIGHT, BAR)

_PANEL_XML = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="icon-size" type="uint" value="22"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
        <value type="int" value="3"/>
        <value type="int" value="4"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="applicationsmenu"/>
    <property name="plugin-2" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-3" type="string" value="systray">
      <property name="icon-size" type="int" value="22"/>
      <property name="square-icons" type="bool" value="false"/>
      <property name="symbolic-icons" type="bool" value="false"/>
    </property>
    <property name="plugin-4" type="string" value="separator">
      <property name="expand" type="bool" value="{after}"/>
      <property name="style" type="uint" value="0"/>
    </property>
  </property>
</channel>
"""

# Shadows would count as parts of the windows.
_WINDOW_MANAGER_XML = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="use_compositing" type="bool" value="true"/>
    <property name="show_dock_shadow" type="bool" value="false"/>
    <property name="show_frame_shadow" type="bool" value="false"/>
    <property name="show_popup_shadow" type="bool" value="false"/>
  </property>
</channel>
"""

_GTK_INI = """[Settings]
gtk-application-prefer-dark-theme=1
gtk-font-name=DejaVu Sans 10
"""


def configure(config_home: Path, is_centred=False):
    """Writes the configuration of the panel and of the window manager. The items are at the panel's right end or
    in its middle."""
    channels = config_home / "xfce4/xfconf/xfce-perchannel-xml"
    channels.mkdir(parents=True)
    (channels / "xfce4-panel.xml").write_text(_PANEL_XML.format(after=str(is_centred).lower()))
    (channels / "xfwm4.xml").write_text(_WINDOW_MANAGER_XML)
    (config_home / "gtk-3.0").mkdir()
    (config_home / "gtk-3.0/settings.ini").write_text(_GTK_INI)


def _variant(name, programs=PROGRAMS, is_centred=False):
    return SimpleNamespace(__name__=name, NAME=NAME, DISPLAY=DISPLAY, PROGRAMS=programs, PANEL=PANEL, BAR=BAR,
                           BAR_HEIGHT=BAR_HEIGHT, configure=partial(configure, is_centred=is_centred), arrive=arrive)  # fmt: skip


CENTRED = _variant("xfce-centred", is_centred=True)

# The desktop's own server of notices, which is not in PATH.
NOTICES = glob.glob("/usr/lib/*/xfce4/notifyd/xfce4-notifyd")
WITH_NOTICES = _variant("xfce-notices", [*PROGRAMS, NOTICES])
