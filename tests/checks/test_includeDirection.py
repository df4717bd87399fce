#!/usr/bin/python3
"""The include check finds what it is there to find."""

import pathlib
import tempfile
import unittest

import includeDirection


def faults(path, text):
    with tempfile.TemporaryDirectory() as directory:
        source = pathlib.Path(directory)
        file = source / path
        file.parent.mkdir(parents=True)
        file.write_text(text)
        return list(includeDirection.faults_of(source, file))


class IncludeDirection(unittest.TestCase):
    def test_allows_what_lies_below(self):
        self.assertEqual(faults("sampling/A.cpp", '#include "base/B.h"\n#include <vector>\n'), [])
        self.assertEqual(faults("app/A.cpp", '#include "platform/linux/B.h"\n'), [])

    def test_finds_what_lies_above_or_beside(self):
        for path, text in [
            ("base/A.h", '#include "platform/B.h"'),
            ("platform/A.h", '#include "platform/linux/B.h"'),
            ("sampling/A.cpp", '#include "settings/B.h"'),
            ("format/A.cpp", '#include "app/B.h"'),
            ("ui/A.cpp", '  # include "platform/linux/B.h"'),
        ]:
            self.assertEqual(len(faults(path, text)), 1, path)

    def test_lets_views_see_states_and_values_but_no_service(self):
        for text in [
            '#include "sampling/SamplerState.h"',
            '#include "sampling/NetworkSnapshot.h"',
            '#include "connectivity/ConnectionInfo.h"',
            '#include "processes/ProcessUsage.h"',
            '#include "settings/AppSettings.h"',
            '#include "platform/PreferencesStore.h"',
            '#include "ui/tokens/TWColor.h"\n#include <QWidget>',
        ]:
            self.assertEqual(faults("ui/A.cpp", text), [], text)
        for text in [
            '#include "sampling/BandwidthSampler.h"',
            '#include "connectivity/NetworkMonitor.h"',
            '#include "alerts/NotificationService.h"',
            '#include "platform/linux/files/FilePath.h"',
            '#include "app/StatusItem.h"',
            '#include "app/ItemState.h"',
            '#include <systemd/sd-bus.h>',
        ]:
            self.assertEqual(len(faults("ui/A.cpp", text)), 1, text)

    def test_finds_libraries_out_of_their_room(self):
        self.assertEqual(len(faults("sampling/A.cpp", "#include <libmnl/libmnl.h>")), 1)
        self.assertEqual(len(faults("app/A.cpp", "#include <QWidget>")), 1)
        self.assertEqual(len(faults("app/A.cpp", "#include <curl/curl.h>")), 1)
        self.assertEqual(len(faults("app/A.cpp", "#include <xcb/xcb.h>")), 1)

    def test_lets_only_the_windows_process_see_where_preferences_lie(self):
        text = '#include "platform/linux/preferences/PreferencesFile.h"\n#include <QObject>'
        self.assertEqual(faults("ui/process/A.cpp", text), [])
        self.assertEqual(len(faults("ui/settings/A.cpp", text)), 1)
        self.assertEqual(len(faults("ui/panel/A.cpp", '#include "ui/process/A.h"')), 1)

    def test_finds_files_outside_of_every_room(self):
        self.assertEqual(len(faults("misc/A.cpp", "")), 1)


if __name__ == "__main__":
    unittest.main()
