#!/usr/bin/env python3
"""Start-up time and memory of Vantrell against the bare engine, in one run.

Start-up: from spawning the process to the first page's onload request reaching a
local server. Memory: proportional set size (PSS) of the whole process tree with 1
and with 10 windows on local pages. The two programs alternate, so both see the
same machine state. Usage: bench/startup/run.py BUILD_DIR [ROUNDS]
"""
import http.server
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

BUILD = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build")
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 5
VANTRELL = os.path.join(BUILD, "bin", "vantrell")
BARE = os.path.join(BUILD, "bench", "startup", "bench_bare_engine")

arrivals = {}
lock = threading.Condition()
PAGE = (b"<html><head><title>Bench %s</title></head><body>"
        b"<p>%s</p><script>window.onload = () => fetch('/onload/%s');</script></body></html>")


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith("/onload/"):
            with lock:
                arrivals[self.path[len("/onload/"):]] = time.monotonic()
                lock.notify_all()
            body = b"ok"
        else:
            name = self.path.strip("/").encode()
            body = PAGE % (name, b"x" * 2000, name)
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *args):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
threading.Thread(target=server.serve_forever, daemon=True).start()
BASE = "http://127.0.0.1:%d/" % server.server_address[1]

ENV = dict(os.environ, QT_QPA_PLATFORM="offscreen", QTWEBENGINE_DISABLE_SANDBOX="1",
           QTWEBENGINE_CHROMIUM_FLAGS="--disable-gpu --no-sandbox", VANTRELL_LANG="de")


def wait_for(names, timeout=60):
    deadline = time.monotonic() + timeout
    with lock:
        while not all(n in arrivals for n in names):
            left = deadline - time.monotonic()
            if left <= 0:
                raise RuntimeError("pages did not load: %s" % names)
            lock.wait(left)


def tree_pss_kib(pid):
    pids, frontier = {pid}, [pid]
    while frontier:
        p = frontier.pop()
        try:
            for task in os.listdir("/proc/%d/task" % p):
                with open("/proc/%d/task/%s/children" % (p, task)) as f:
                    for child in f.read().split():
                        if int(child) not in pids:
                            pids.add(int(child))
                            frontier.append(int(child))
        except OSError:
            pass
    total = 0
    for p in pids:
        try:
            with open("/proc/%d/smaps_rollup" % p) as f:
                for line in f:
                    if line.startswith("Pss:"):
                        total += int(line.split()[1])
        except OSError:
            pass
    return total


def stop(proc):
    proc.terminate()
    try:
        proc.wait(15)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.wait()


def run_vantrell(tag, windows):
    data = tempfile.mkdtemp(prefix="vantrell-bench-")
    env = dict(ENV, VANTRELL_DATA_DIR=data)
    names = ["%s-%d" % (tag, i) for i in range(windows)]
    start = time.monotonic()
    proc = subprocess.Popen([VANTRELL, BASE + names[0]], env=env,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wait_for(names[:1])
    startup = arrivals[names[0]] - start
    for name in names[1:]:
        subprocess.run([VANTRELL, BASE + name], env=env, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=60)
    wait_for(names)
    time.sleep(1.0)
    pss = tree_pss_kib(proc.pid)
    stop(proc)
    shutil.rmtree(data, ignore_errors=True)
    return startup, pss


def run_bare(tag, windows):
    names = ["%s-%d" % (tag, i) for i in range(windows)]
    start = time.monotonic()
    proc = subprocess.Popen([BARE] + [BASE + n for n in names], env=ENV,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wait_for(names)
    startup = arrivals[names[0]] - start
    time.sleep(1.0)
    pss = tree_pss_kib(proc.pid)
    stop(proc)
    return startup, pss


results = {"vantrell": {1: [], 10: []}, "bare": {1: [], 10: []}}
for rnd in range(ROUNDS):
    for windows in (1, 10):
        for name, runner in (("bare", run_bare), ("vantrell", run_vantrell)):
            results[name][windows].append(runner("%s-r%d-w%d" % (name, rnd, windows), windows))

def median(values):
    return statistics.median(values)

print("rounds: %d (medians)" % ROUNDS)
for windows in (1, 10):
    b_start = median([s for s, _ in results["bare"][windows]])
    v_start = median([s for s, _ in results["vantrell"][windows]])
    b_pss = median([p for _, p in results["bare"][windows]])
    v_pss = median([p for _, p in results["vantrell"][windows]])
    if windows == 1:
        print("start-up to first onload: bare %.3f s, Vantrell %.3f s, ratio %.2f" % (b_start, v_start, v_start / b_start))
    print("PSS with %2d window(s):    bare %.0f MiB, Vantrell %.0f MiB, ratio %.2f"
          % (windows, b_pss / 1024, v_pss / 1024, v_pss / b_pss))
server.shutdown()
