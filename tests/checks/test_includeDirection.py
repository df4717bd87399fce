#!/usr/bin/python3
"""The check of includes finds mistakes."""

import pathlib
import tempfile
import unittest

import includeDirection

ALLOWED = [
    ("sampling/A.cpp", '#include "base/B.h"\n#include <vector>\n'),
    ("app/A.cpp", '#include "platform/linux/B.h"\n'),
    # Views see states and values.
    ("ui/A.cpp", '#include "sampling/SamplerState.h"'),
    ("ui/A.cpp", '#include "sampling/NetworkSnapshot.h"'),
    ("ui/A.cpp", '#include "connectivity/ConnectionInfo.h"'),
    ("ui/A.cpp", '#include "processes/ProcessUsage.h"'),
    ("ui/A.cpp", '#include "settings/AppSettings.h"'),
    ("ui/A.cpp", '#include "platform/PreferencesStore.h"'),
    ("ui/A.cpp", '#include "ui/tokens/TWColor.h"\n#include <QWidget>'),
    # The windows' process alone knows where the preferences are.
    ("ui/application/A.cpp", '#include "platform/linux/preferences/PreferencesFile.h"\n#include <QObject>'),
]
FORBIDDEN = [
    ("base/A.h", '#include "platform/B.h"'),
    ("platform/A.h", '#include "platform/linux/B.h"'),
    ("sampling/A.cpp", '#include "settings/B.h"'),
    ("format/A.cpp", '#include "app/B.h"'),
    ("ui/A.cpp", '  # include "platform/linux/B.h"'),
    ("ui/A.cpp", '#include "sampling/BandwidthSampler.h"'),
    ("ui/A.cpp", '#include "connectivity/NetworkMonitor.h"'),
    ("ui/A.cpp", '#include "alerts/NotificationService.h"'),
    ("ui/A.cpp", '#include "app/StatusItem.h"'),
    ("ui/A.cpp", '#include "app/ItemState.h"'),
    ("ui/A.cpp", "#include <systemd/sd-bus.h>"),
    ("ui/settings/A.cpp", '#include "platform/linux/preferences/PreferencesFile.h"\n#include <QObject>'),
    ("ui/panel/A.cpp", '#include "ui/application/A.h"'),
    # Libraries outside of their rooms, and files outside of every room.
    ("sampling/A.cpp", "#include <linux/netlink.h>"),
    ("app/A.cpp", "#include <QWidget>"),
    ("app/A.cpp", "#include <curl/curl.h>"),
    ("app/A.cpp", "#include <xcb/xcb.h>"),
    ("misc/A.cpp", ""),
]


class IncludeDirection(unittest.TestCase):
    def test_finds_what_is_forbidden_and_nothing_else(self):
        for cases, faults in ((ALLOWED, 0), (FORBIDDEN, 1)):
            for path, text in cases:
                with self.subTest(path=path, text=text), tempfile.TemporaryDirectory() as folder:
                    file = pathlib.Path(folder) / path
                    file.parent.mkdir(parents=True)
                    file.write_text(text)
                    found = list(includeDirection.faults_of(pathlib.Path(folder), file))
                    self.assertEqual(len(found), faults, found)


if __name__ == "__main__":
    unittest.main()
