#!/usr/bin/env python3
"""Start-up time, memory and hand-over pacing of Vantrell against the bare engine.

Start-up: from spawning the process to the first page's onload request reaching a
local server. Memory: proportional set size (PSS) of the whole process tree with 1,
10 and 50 windows on local pages, once the pages have settled. Hand-over: from
starting a second instance with an address to that page's onload in the running one.
The two programs alternate, so both see the same machine state.

Usage: bench/startup/run.py BUILD_DIR [ROUNDS] [--windows 1,10,50] [--xvfb] [--bare-software]
"""
import argparse
import http.server
import os
import shutil
import statistics
import subprocess
import tempfile
import threading
import time

parser = argparse.ArgumentParser()
parser.add_argument("build", nargs="?", default="build")
parser.add_argument("rounds", nargs="?", type=int, default=5)
parser.add_argument("--windows", default="1,10,50")
parser.add_argument("--xvfb", action="store_true", help="run on a real X server (Xvfb)")
parser.add_argument("--bare-software", action="store_true",
                    help="let the bare engine compose in software too, as Vantrell does "
                         "when it runs without the GPU")
parser.add_argument("--settle", type=float, default=5.0,
                    help="seconds between the last onload and the memory reading")
args = parser.parse_args()

BUILD = os.path.abspath(args.build)
COUNTS = [int(n) for n in args.windows.split(",")]
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

ENV = dict(os.environ, QTWEBENGINE_DISABLE_SANDBOX="1",
           QTWEBENGINE_CHROMIUM_FLAGS="--disable-gpu --no-sandbox", VANTRELL_LANG="de")
xvfb = None
if args.xvfb:
    display = ":%d" % (90 + os.getpid() % 9)
    xvfb = subprocess.Popen(["Xvfb", display, "-screen", "0", "1600x1000x24", "-nolisten", "tcp"],
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(1.0)
    ENV.update(DISPLAY=display, QT_QPA_PLATFORM="xcb")
else:
    ENV.update(QT_QPA_PLATFORM="offscreen")


def wait_for(names, timeout=180):
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
    """Ten windows are the first start plus nine hand-overs, as a user opening links
    from elsewhere would produce them; each hand-over waits for the page before."""
    data = tempfile.mkdtemp(prefix="vantrell-bench-")
    env = dict(ENV, VANTRELL_DATA_DIR=data)
    names = ["%s-%d" % (tag, i) for i in range(windows)]
    start = time.monotonic()
    proc = subprocess.Popen([VANTRELL, BASE + names[0]], env=env,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wait_for(names[:1])
    startup = arrivals[names[0]] - start
    handovers = []
    for name in names[1:]:
        began = time.monotonic()
        subprocess.run([VANTRELL, BASE + name], env=env, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=60)
        wait_for([name])
        handovers.append(arrivals[name] - began)
    time.sleep(args.settle)
    pss = tree_pss_kib(proc.pid)
    stop(proc)
    shutil.rmtree(data, ignore_errors=True)
    return startup, pss, handovers


def run_bare(tag, windows):
    names = ["%s-%d" % (tag, i) for i in range(windows)]
    start = time.monotonic()
    env = dict(ENV, QT_QUICK_BACKEND="software") if args.bare_software else ENV
    proc = subprocess.Popen([BARE] + [BASE + n for n in names], env=env,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wait_for(names)
    startup = arrivals[names[0]] - start
    time.sleep(args.settle)
    pss = tree_pss_kib(proc.pid)
    stop(proc)
    return startup, pss, []


results = {name: {n: [] for n in COUNTS} for name in ("bare", "vantrell")}
try:
    for rnd in range(args.rounds):
        for windows in COUNTS:
            for name, runner in (("bare", run_bare), ("vantrell", run_vantrell)):
                results[name][windows].append(
                    runner("%s-r%d-w%d" % (name, rnd, windows), windows))
finally:
    server.shutdown()
    if xvfb:
        xvfb.terminate()

median = statistics.median
print("%s%s, %d rounds (medians), memory read %.0f s after the last onload"
      % ("Xvfb" if args.xvfb else "offscreen",
         ", bare composing in software" if args.bare_software else "", args.rounds, args.settle))
first = COUNTS[0]
b_start = median([s for s, _, _ in results["bare"][first]])
v_start = median([s for s, _, _ in results["vantrell"][first]])
print("start-up to first onload: bare %.3f s, Vantrell %.3f s, ratio %.2f"
      % (b_start, v_start, v_start / b_start))
for windows in COUNTS:
    b_pss = median([p for _, p, _ in results["bare"][windows]])
    v_pss = median([p for _, p, _ in results["vantrell"][windows]])
    print("PSS with %2d window(s):    bare %.0f MiB, Vantrell %.0f MiB, ratio %.2f"
          % (windows, b_pss / 1024, v_pss / 1024, v_pss / b_pss))
most = max(COUNTS)
if most > 2:
    # Pacing by position: does a hand-over take longer the more windows are open?
    per_index = list(zip(*[h for _, _, h in results["vantrell"][most]]))
    per_index = [median(times) for times in per_index]
    head, tail = per_index[1:11], per_index[-10:]
    print("hand-over to onload, windows 3-12: median %.3f s, max %.3f s"
          % (median(head), max(head)))
    print("hand-over to onload, last 10 of %d: median %.3f s, max %.3f s"
          % (most, median(tail), max(tail)))
