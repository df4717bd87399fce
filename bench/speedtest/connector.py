"""Opens connections at a steady pace; prints as JSON how many milliseconds each took.

    connector.py ADDRESS PORT PER_SECOND SECONDS
"""

import json
import socket
import sys
import threading
import time

address, port, per_second, seconds = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), float(sys.argv[4])
times = []


def connect():
    begin = time.perf_counter()
    with socket.create_connection((address, port), 20):
        times.append((time.perf_counter() - begin) * 1e3)


threads = [threading.Thread(target=connect) for _ in range(int(per_second * seconds))]
for thread in threads:
    thread.start()
    time.sleep(1 / per_second)
for thread in threads:
    thread.join()
print(json.dumps(times))
