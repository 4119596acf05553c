#!/usr/bin/env python3
"""The inspector of dbhost (--http) in a real browser: headless Chromium driven
by Selenium against a dbhost on 127.0.0.1 and a free port.

Checks: the page loads without a console error; searching for an item's name
finds it; a change written to the host's standard input shows on the page
within a second without a reload; a missing or wrong token gets 401 on the
page, the API, the feed and the metrics. Measures the time to first paint
with 10,000 items and how long a search takes there, and leaves a screenshot
of the page with the demo's data.

Exit status 0 when every check holds, 1 otherwise, 77 (skipped) when no
Chromium or chromedriver is installed.
"""

import argparse
import json
import os
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.error
import urllib.request

SKIP = 77
TOKEN = "inspector-test-token"


def find_browser():
    for name in ("chromium", "chromium-browser", "google-chrome"):
        path = shutil.which(name)
        if path:
            return path
    return None


class Host:
    """A dbhost with its inspector on a free loopback port; its input stays open."""

    def __init__(self, dbhost, folder, token_file):
        self.process = subprocess.Popen(
            [dbhost, "--data", folder, "--log-level", "1", "--http", "127.0.0.1:0",
             "--http-token-file", token_file],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.lines = []
        self.errors = ""
        self.port = None
        found = threading.Event()

        def read_errors():
            for raw in self.process.stderr:
                self.errors += raw.decode(errors="replace")
                match = re.search(r"inspector at http://127\.0\.0\.1:(\d+)/", self.errors)
                if match and not found.is_set():
                    self.port = int(match.group(1))
                    found.set()
            found.set()

        def read_output():
            for raw in self.process.stdout:
                self.lines.append((time.monotonic(), raw))

        threading.Thread(target=read_errors, daemon=True).start()
        threading.Thread(target=read_output, daemon=True).start()
        found.wait(60)
        if not self.port:
            raise RuntimeError("dbhost did not open its inspector: " + self.errors)

    def send(self, text):
        self.process.stdin.write(text.encode() if isinstance(text, str) else text)
        self.process.stdin.flush()

    def settle(self, quiet=0.6, limit=60):
        """Waits until standard output has been quiet for a while."""
        end = time.monotonic() + limit
        seen, since = -1, time.monotonic()
        while time.monotonic() < end:
            if len(self.lines) != seen:
                seen, since = len(self.lines), time.monotonic()
            elif time.monotonic() - since >= quiet:
                return
            time.sleep(0.05)

    def url(self, path):
        return "http://127.0.0.1:%d%s" % (self.port, path)

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(30)
            except subprocess.TimeoutExpired:
                self.process.kill()


def status_of(url, authorization=None):
    request = urllib.request.Request(url)
    if authorization:
        request.add_header("Authorization", authorization)
    try:
        with urllib.request.urlopen(request, timeout=10) as reply:
            return reply.status
    except urllib.error.HTTPError as error:
        return error.code


def handshake_status(port, target):
    with socket.create_connection(("127.0.0.1", port), timeout=10) as sock:
        sock.sendall(("GET %s HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                      "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n"
                      % (target, port)).encode())
        head = b""
        while b"\r\n" not in head:
            chunk = sock.recv(4096)
            if not chunk:
                break
            head += chunk
    return int(head.split(b" ")[1]) if head.startswith(b"HTTP/1.1 ") else 0


def item(name, driver="drivers/driver_knx/1"):
    return {"id_driver": driver, "name": name, "description": "", "enabled": True, "status": "1/1/2",
            "command": "1/1/1", "feedback": "1/1/3", "type": "dtp_1", "typeformat": "", "interpreter": "",
            "tracking": False, "flags": 0}


def request_line(key, payload):
    return json.dumps({"topic": "request/DB/persistent/items/objects_list/" + key, "payload": payload}) + "\n"


class Checks:
    def __init__(self):
        self.failed = []

    def expect(self, condition, what):
        print(("ok    " if condition else "FAIL  ") + what, flush=True)
        if not condition:
            self.failed.append(what)


def wait_for(predicate, seconds, step=0.01):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = predicate()
        if value:
            return value
        time.sleep(step)
    return predicate()


def make_driver(browser, chromedriver, profile):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service

    options = webdriver.ChromeOptions()
    options.binary_location = browser
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--window-size=1500,900", "--user-data-dir=" + profile, "--no-first-run",
                     "--disable-extensions", "--disable-background-networking"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service(executable_path=chromedriver), options=options)


def open_page(driver, host, checks, label):
    driver.get(host.url("/?token=" + TOKEN))
    ready = wait_for(lambda: driver.execute_script("return document.body && document.body.dataset.ready === '1'"),
                     30, 0.02)
    checks.expect(bool(ready), label + ": the page loads its data")
    return ready


def console_errors(driver):
    return [entry for entry in driver.get_log("browser") if entry.get("level") == "SEVERE"]


def big_folder(demo_folder, folder, count):
    """The demo's data folder with count more items, written as a saved database."""
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(demo_folder, "persistent.json")) as f:
        persistent = json.load(f)
    objects = persistent["items"]["objects_list"]
    model = objects["light_hall"]
    for i in range(count):
        entry = dict(model)
        entry["name"] = "Load item %05d" % i
        entry["description"] = "Floor %d, room %d" % (i // 500, i % 500)
        objects["load_%05d" % i] = entry
    with open(os.path.join(folder, "persistent.json"), "w") as f:
        json.dump(persistent, f, indent=4)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--dbhost", required=True)
    parser.add_argument("--demo", required=True)
    parser.add_argument("--screenshot", required=True)
    parser.add_argument("--figures", required=True)
    parser.add_argument("--items", type=int, default=10000)
    args = parser.parse_args()

    browser = find_browser()
    chromedriver = shutil.which("chromedriver")
    if not browser or not chromedriver:
        print("SKIP: no Chromium and chromedriver installed (Debian: chromium chromium-driver; ./dev.sh installs them)")
        return SKIP
    try:
        import selenium  # noqa: F401
    except ImportError:
        print("SKIP: no Selenium for Python installed (Debian: python3-selenium; ./dev.sh installs it)")
        return SKIP

    checks = Checks()
    figures = {}
    work = tempfile.mkdtemp(prefix="inspector-")
    token_file = os.path.join(work, "token")
    with open(token_file, "w") as f:
        f.write(TOKEN + "\n")
    demo_folder = os.path.join(work, "demo")
    host = Host(args.dbhost, demo_folder, token_file)
    driver = None
    try:
        with open(args.demo, "rb") as f:
            host.send(f.read())
        host.settle()

        # Access: a missing or wrong token is refused on every road.
        for path in ("/", "/api/hashes", "/api/persistent/items", "/metrics"):
            checks.expect(status_of(host.url(path)) == 401, "no token: 401 on " + path)
            checks.expect(status_of(host.url(path), "Bearer wrong") == 401, "wrong token: 401 on " + path)
            checks.expect(status_of(host.url(path), "Bearer " + TOKEN) == 200, "token: 200 on " + path)
        checks.expect(status_of(host.url("/?token=wrong")) == 401, "wrong token in the query: 401 on /")
        checks.expect(handshake_status(host.port, "/feed") == 401, "no token: 401 on the feed")
        checks.expect(handshake_status(host.port, "/feed?token=wrong") == 401, "wrong token: 401 on the feed")
        checks.expect(handshake_status(host.port, "/feed?token=" + TOKEN) == 101, "token: the feed opens")

        driver = make_driver(browser, chromedriver, os.path.join(work, "profile"))
        from selenium.webdriver.common.by import By

        # Without a token the browser gets the refusal, not the page.
        driver.get(host.url("/"))
        checks.expect("token" in driver.find_element(By.TAG_NAME, "body").text,
                      "the page without a token shows the refusal")
        driver.get_log("browser")  # that refusal is the one expected console error

        open_page(driver, host, checks, "demo")
        time.sleep(0.5)
        errors = console_errors(driver)
        checks.expect(not errors, "no console error" + (": %s" % errors if errors else ""))

        search = driver.find_element(By.ID, "search")
        search.send_keys("Hall light")

        def found_rows():
            return driver.execute_script(
                "return [...document.querySelectorAll('#rows .row')].filter(r => r.style.display !== 'none')"
                ".map(r => r.querySelector('.name').textContent)")
        rows = wait_for(lambda: "light_hall" in found_rows() and found_rows(), 5, 0.02)
        checks.expect(bool(rows) and "light_hall" in rows, "searching 'Hall light' finds light_hall: %s" % rows)
        checks.expect(bool(rows) and "room_hall" not in rows, "the search leaves out what doesn't match")
        driver.execute_script(
            "[...document.querySelectorAll('#rows .row')].find(r => r.querySelector('.name').textContent"
            " === 'light_hall' && r.querySelector('.where').textContent.startsWith('persistent')).click()")
        checks.expect(bool(wait_for(lambda: "Hall light" in driver.find_element(By.ID, "detail").text, 3)),
                      "choosing it shows its JSON")

        # A change on standard input: on the page within a second, no reload.
        driver.execute_script("window.__sameLoad = true")
        latencies = []
        for n in range(3):
            name = "Hall light renamed %d" % n
            sent = time.monotonic()
            host.send(request_line("light_hall", dict(item(name), description="Ceiling")))
            shown = wait_for(lambda: name in driver.find_element(By.ID, "detail").text
                             and name in " ".join(driver.execute_script(
                                 "return [...document.querySelectorAll('#rows .row .preview')]"
                                 ".map(p => p.textContent)")), 5, 0.005)
            latencies.append(time.monotonic() - sent if shown else None)
        checks.expect(all(l is not None and l < 1.0 for l in latencies),
                      "a change shows on the page within 1 s: %s" % ["%.3f s" % l if l else "never" for l in latencies])
        checks.expect(driver.execute_script("return window.__sameLoad === true"), "without a reload")
        hot = driver.execute_script("return document.querySelectorAll('#rows .row.hot').length")
        checks.expect(hot >= 1, "the changed row is highlighted")
        listed = driver.find_element(By.ID, "changes").text
        checks.expect("items/objects_list/light_hall" in listed and "onPersistentChangeItem" in listed,
                      "the change is listed with its topic and signal")
        live = "status/DB/realtime/items/objects_list/light_hall/value"
        host.send(json.dumps({"topic": live, "payload": "0"}) + "\n")
        checks.expect(bool(wait_for(lambda: "onRealtimeChange" in driver.find_element(By.ID, "changes").text, 2)),
                      "a live value's change is listed")
        figures["change_to_page_seconds"] = [round(l, 3) for l in latencies if l is not None]

        # Paused, the list stands still.
        driver.find_element(By.ID, "pause").click()
        before = driver.find_element(By.ID, "changes").text
        host.send(request_line("light_hall", dict(item("Paused name"), description="Ceiling")))
        wait_for(lambda: "Paused name" in driver.find_element(By.ID, "detail").text, 3)
        checks.expect(driver.find_element(By.ID, "changes").text == before, "paused: the list stands still")
        checks.expect(re.fullmatch(r"\d+ not listed", driver.find_element(By.ID, "missed").text) is not None,
                      "paused: what was not listed is said")
        driver.find_element(By.ID, "pause").click()
        host.send(request_line("light_hall", dict(item("Hall light"), description="Ceiling, dimmable")))
        wait_for(lambda: '"Hall light"' in driver.find_element(By.ID, "detail").text, 3)

        status = driver.find_element(By.ID, "status").text
        checks.expect("offline" in status and demo_folder in status and "last save" in status,
                      "the status line: " + status)

        # The screenshot: the demo's items open, the hall light chosen.
        search.clear()
        driver.execute_script("document.getElementById('search').dispatchEvent(new Event('input'))")
        time.sleep(0.2)
        for label in ("persistent", "items", "realtime"):
            driver.execute_script(
                "const r = [...document.querySelectorAll('#rows .row')].find(r => r.style.display !== 'none' &&"
                " r.querySelector('.name').textContent === arguments[0] && r.querySelector('.arrow').textContent"
                " === '▸'); if (r) r.click();", label)
            time.sleep(0.15)
        time.sleep(1.2)  # the highlights fade
        os.makedirs(os.path.dirname(os.path.abspath(args.screenshot)), exist_ok=True)
        driver.save_screenshot(args.screenshot)
        checks.expect(os.path.getsize(args.screenshot) > 10000, "screenshot at " + args.screenshot)
        errors = console_errors(driver)
        checks.expect(not errors, "still no console error" + (": %s" % errors if errors else ""))
        # Away from the page before its host goes: its retries would be errors of their own.
        driver.get("about:blank")
        host.stop()
        driver.get_log("browser")

        # Many items: first paint, and a search across all of them.
        big = os.path.join(work, "big")
        big_folder(demo_folder, big, args.items)
        host = Host(args.dbhost, big, token_file)
        paints, searches = [], []
        for attempt in range(3):
            if not open_page(driver, host, checks, "%d items" % args.items):
                break
            timing = driver.execute_script(
                "const p = performance.getEntriesByName('first-contentful-paint')[0];"
                "return [p ? p.startTime : null, window.inspector.firstDataPaint,"
                " performance.getEntriesByType('navigation')[0].responseEnd]")
            paints.append(timing)
            search = driver.find_element(By.ID, "search")
            # A query that matches a tenth of the items, typed key by key.
            started = time.monotonic()
            search.send_keys("item 01")
            # Done when the count is that of the whole query (the twins of
            # the realtime database may match too), not of a part of it.
            done = wait_for(lambda: driver.execute_script(
                "const n = parseInt(document.getElementById('found').textContent);"
                "return n >= 1000 && n <= 2000"), 10, 0.005)
            searches.append(time.monotonic() - started if done else None)
        checks.expect(len(paints) == 3 and all(p[1] for p in paints), "the page paints %d items" % args.items)
        if paints:
            fcp = sorted(p[0] for p in paints if p[0] is not None)
            data = sorted(p[1] for p in paints if p[1] is not None)
            figures["items"] = args.items
            figures["first_contentful_paint_ms"] = round(fcp[len(fcp) // 2], 1) if fcp else None
            figures["data_painted_ms"] = round(data[len(data) // 2], 1) if data else None
        checks.expect(all(s is not None and s < 1.5 for s in searches),
                      "typing a search over %d items finds them in time: %s"
                      % (args.items, ["%.3f s" % s if s else "never" for s in searches]))
        figures["search_typed_seconds"] = [round(s, 3) for s in searches if s is not None]
        errors = console_errors(driver)
        checks.expect(not errors, "no console error with %d items" % args.items + (": %s" % errors if errors else ""))
    finally:
        if driver:
            driver.quit()
        host.stop()
        shutil.rmtree(work, ignore_errors=True)

    with open(args.figures, "w") as f:
        json.dump(figures, f, indent=2)
    print("figures:", json.dumps(figures))
    if checks.failed:
        print("%d checks failed" % len(checks.failed))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
