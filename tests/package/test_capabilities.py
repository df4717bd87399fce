#!/usr/bin/python3
"""An upgrade leaves the helper with capabilities or without them, as it was before.

Real dpkg and cmake install packages that contain only the helper. The scripts of the other packages run as
their managers would run them. All that happens in a mount namespace with an empty /var/lib and /usr/libexec.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PACKAGING = ROOT / "packaging"
HELPER = pathlib.Path("/usr/libexec/tidewell/nettop")
GRANTED = "cap_net_admin,cap_perfmon,cap_bpf=p"
NOTES = pathlib.Path("/var/lib")

CONTROL = """Package: tidewell
Version: {version}
Architecture: all
Maintainer: The Tidewell developers <tidewell@packages.invalid>
Description: the helper alone
"""

INSTALL = """set(helper {helper})
set(capabilities cap_bpf,cap_net_admin,cap_perfmon=p)
include({scripts}/noteCapabilities.cmake)
file(REMOVE {helper})
file(COPY {program} DESTINATION {folder})
include({scripts}/grantCapabilities.cmake)
"""


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True,
                          **options).stdout


class Package:
    """How one kind of package is installed, upgraded to the next version, and removed."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.version = 0
        self.program = self.folder / "nettop"
        shutil.copy("/bin/true", self.program)

    def copy(self):
        """Replaces the helper."""
        HELPER.parent.mkdir(exist_ok=True)
        HELPER.unlink(missing_ok=True)
        shutil.copy(self.program, HELPER)

    def remove(self):
        HELPER.unlink()


class Debian(Package):
    def __init__(self, folder):
        super().__init__(folder)
        self.state = self.folder / "dpkg"
        for name in ("info", "updates"):
            (self.state / name).mkdir(parents=True)
        (self.state / "status").touch()

    def dpkg(self, *arguments, wrapper=()):
        return run(*wrapper, "dpkg", "--admindir", self.state, *arguments)

    def archive(self):
        """The next version's."""
        self.version += 1
        tree = self.folder / "tree"
        (tree / "DEBIAN").mkdir(parents=True)
        (tree / "DEBIAN/control").write_text(CONTROL.format(version=self.version))
        for name in ("preinst", "postinst", "postrm", "prerm"):
            if (PACKAGING / "debian" / name).exists():
                shutil.copy(PACKAGING / "debian" / name, tree / "DEBIAN")
        path = tree / HELPER.relative_to("/")
        path.parent.mkdir(parents=True)
        shutil.copy(self.program, path)
        package = self.folder / f"{self.version}.deb"
        run("dpkg-deb", "--build", "--root-owner-group", tree, package)
        shutil.rmtree(tree)
        return package

    def install(self, wrapper=()):
        self.dpkg("--install", self.archive(), wrapper=wrapper)

    upgrade = install

    def remove(self):
        self.dpkg("--purge", "tidewell")


class Rpm(Package):
    def script(self, name, count):
        spec = (PACKAGING / "rpm/tidewell.spec").read_text()
        text = re.search(rf"^%{name}\n(.*?)^%[a-z]+$", spec + "%end\n", re.MULTILINE | re.DOTALL)
        lines = [line for line in (text[1] if text else "").splitlines()
                 if not line.startswith("%systemd")]
        script = "\n".join(lines).replace("%{_libexecdir}", "/usr/libexec").replace(
            "%{_sharedstatedir}", "/var/lib")
        self.assert_expanded(script)
        run("sh", "-e", "-c", script, "sh", count)

    @staticmethod
    def assert_expanded(script):
        if "%" in script:
            raise AssertionError(f"a macro that this test does not know: {script}")

    def put(self, count):
        self.script("pre", count)
        self.copy()
        run("setcap", "cap_bpf,cap_net_admin,cap_perfmon=p", HELPER)  # %caps
        self.script("post", count)

    def install(self):
        self.put(1)

    def upgrade(self):
        self.put(2)


class Arch(Package):
    def hook(self, name):
        run("bash", "-c", '. "$1"; if declare -F "$2"; then "$2"; fi', "bash",
            PACKAGING / "arch/tidewell.install", name, cwd="/")

    def install(self):
        self.copy()
        self.hook("post_install")

    def upgrade(self):
        self.hook("pre_upgrade")
        self.copy()
        self.hook("post_upgrade")


class Sources(Package):
    def install(self):
        HELPER.parent.mkdir(exist_ok=True)
        script = self.folder / "install.cmake"
        script.write_text(INSTALL.format(helper=HELPER, folder=HELPER.parent, program=self.program,
                                         scripts=ROOT / "src/helpers/nettop"))
        run("cmake", "-P", script)

    upgrade = install


class Capabilities(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def assert_granted(self, is_granted=True):
        self.assertEqual(run("getcap", HELPER).strip(), f"{HELPER} {GRANTED}" if is_granted else "")
        self.assertEqual(list(NOTES.iterdir()), [], "no notes remain")

    def test_are_as_before_after_an_upgrade(self):
        for kind in (Debian, Rpm, Arch, Sources):
            with self.subTest(kind.__name__), tempfile.TemporaryDirectory() as folder:
                package = kind(folder)
                package.install()
                self.assert_granted()
                package.upgrade()
                self.assert_granted()
                run("setcap", "-r", HELPER)
                for _ in range(2):
                    package.upgrade()
                    self.assert_granted(False)
                run("setcap", GRANTED, HELPER)
                package.upgrade()
                self.assert_granted()
                run("setcap", "-r", HELPER)
                package.remove()
                package.install()
                self.assert_granted()
                package.remove()

    def test_are_not_set_by_configuring_again(self):
        package = Debian(self.folder)
        package.install()
        run("setcap", "-r", HELPER)
        run(package.state / "info/tidewell.postinst", "configure", package.version)
        self.assert_granted(False)
        package.remove()

    def test_survive_an_upgrade_that_was_interrupted(self):
        package = Debian(self.folder)
        package.install()
        for _ in range(2):
            package.dpkg("--unpack", package.archive())
        package.dpkg("--configure", "tidewell")
        self.assert_granted()
        package.dpkg("--unpack", package.archive())
        package.remove()
        self.assertEqual(list(NOTES.iterdir()), [])

    def test_may_be_refused(self):
        package = Debian(self.folder)
        package.install(wrapper=["setpriv", "--bounding-set=-setfcap"])
        self.assert_granted(False)
        package.remove()


WITHIN = 'mount -t tmpfs tmpfs /var/lib && mount -t tmpfs tmpfs /usr/libexec && exec "$@"'


def main():
    missing = [tool for tool in ("dpkg-deb", "setcap", "setpriv", "unshare", "cmake")
               if not shutil.which(tool)]
    if os.geteuid() != 0 or missing:
        print("skipped:", f"no {missing[0]}" if missing else "needs root")
        return 77
    if sys.argv[1:2] != ["--within"]:
        return subprocess.run(["unshare", "--mount", "sh", "-c", WITHIN, "sh", sys.executable, "-B",
                               __file__, "--within", *sys.argv[1:]]).returncode
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    return unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)


if __name__ == "__main__":
    sys.exit(main())
