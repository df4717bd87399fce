"""What the user's machine is full of while something is measured."""

import statistics

from cost import Cost
from harness import nettop

NET = "198.51.100.2"
PORT = 7000
# Of the sockets, so many say something in every second.
ACTIVE = 10
RUNS = 5


class Crowd:
    """A `with` block among sockets or processes."""

    def __init__(self, this_world):
        self.world = this_world
        self._processes = []

    def __enter__(self):
        try:
            self.gather()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            nettop.end(process)

    def add(self, where, *arguments):
        self._processes.append(nettop.crowd(self.world, where, *arguments))

    def helper_costs(self):
        """What a call of the helper that tells who uses the network costs among them."""
        arguments = [nettop.HELPER]
        # The shortest way in, and what it takes to start the program is not its own.
        enter = ["nsenter", f"--net=/run/netns/{self.world.command('user')[3]}"]
        entry = statistics.median(Cost([*enter, "true"]).milliseconds for _ in range(9))
        return {"bpf": _costs([*arguments, "--route=bpf"], 0.0),
                "diag": _costs([*enter, *arguments, "--route=diag"], entry)}

    def connect(self, count):
        self.add("net", "serve", NET, PORT)
        self.add("user", "connect", NET, PORT, count, min(ACTIVE, count))


class Sockets(Crowd):
    def __init__(self, this_world, count):
        super().__init__(this_world)
        self._count = count

    def gather(self):
        self.connect(self._count)


class Processes(Crowd):
    def __init__(self, this_world, count):
        super().__init__(this_world)
        self._count = count

    def gather(self):
        # Some sockets whose owners are to be found among them.
        self.connect(ACTIVE)
        self.add("user", "idle", self._count, 0)


def _costs(command, entry):
    """None where it fails, as eBPF does where the kernel does not take it."""
    costs = [Cost(command) for _ in range(RUNS)]
    if any(cost.status != 0 for cost in costs):
        return None
    spent = [max(0.0, cost.milliseconds - entry) for cost in costs]
    return {"milliseconds": spent, "peak": max(cost.peak for cost in costs)}
