#!/usr/bin/env python3
"""Writes the seed corpora under fuzz/corpus from what the project already has:
the packets of the tests and of examples/demo.jsonl, the factory databases of
every brand and role (made by dbhost), and the serialised trees in them.

    fuzz/make_seeds.py build/host/dbhost/dbhost

Seeds are named by the hash of their content, so running it again only adds.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile

here = os.path.dirname(os.path.abspath(__file__))
root = os.path.dirname(here)
engines = ("persistent", "realtime", "presencesimulation")


def put(target, data):
    if isinstance(data, (dict, list)):
        data = json.dumps(data, separators=(",", ":"))
    data = data.encode() if isinstance(data, str) else data
    folder = os.path.join(here, "corpus", target)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, hashlib.sha1(data).hexdigest()[:16]), "wb") as f:
        f.write(data)


def at(document, relative):
    """The value at a slash path, or None."""
    value = document
    for step in relative.split("/"):
        if isinstance(value, dict) and step in value:
            value = value[step]
        else:
            return None
    return value


def sample(document, relative):
    """A payload for a topic: the value at its path, or else a sibling's, so that
    a test's made-up key still gets an object of the right shape."""
    value = at(document, relative)
    if value is not None:
        return value
    parent = at(document, relative.rsplit("/", 1)[0]) if "/" in relative else None
    if isinstance(parent, dict) and parent:
        return next(iter(parent.values()))
    return None


def main():
    dbhost = sys.argv[1]
    work = tempfile.mkdtemp()
    images = {}
    for brand in ("HALDO", "VESTRA", "TOLVER", "ARDENWALL"):
        for role in ("server", "client", "offline"):
            folder = os.path.join(work, brand + role)
            subprocess.run([dbhost, "--data", folder, "--brand", brand, "--role", role],
                           stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for engine in engines:
                with open(os.path.join(folder, engine + ".json"), "rb") as f:
                    raw = f.read()
                put("fuzz_load_" + engine, raw)
                put("fuzz_host_load", raw)
                images.setdefault(engine, json.loads(raw))
    # The demo's data folder: a house with items, elements, a schedule and live values.
    demo = os.path.join(work, "demo")
    with open(os.path.join(root, "examples", "demo.jsonl"), "rb") as lines:
        out = subprocess.run([dbhost, "--data", demo], stdin=lines, capture_output=True).stdout
    for engine in engines:
        with open(os.path.join(demo, engine + ".json"), "rb") as f:
            raw = f.read()
        put("fuzz_load_" + engine, raw)
        put("fuzz_host_load", raw)
        images[engine] = json.loads(raw)
    week = {"week": {"days": {"1": {"hours": {"7": {"minutes": {"30": {"actions": {"light_hall": "1"}}}}}},
                              "7": {"hours": {"23": {"minutes": {"59": {"actions": {"a": "0", "b": "x"}}}}}}}}}
    put("fuzz_load_presencesimulation", week)
    put("fuzz_host_load", week)
    put("fuzz_packet_presencesimulation", {"topic": "status/DB/presencesimulation/DB", "payload": week})
    put("fuzz_host_load", b"")
    put("fuzz_host_load", raw[: len(raw) // 2])
    put("fuzz_load_persistent", dict(images["persistent"], versions={"database": "1.0.0"}))

    # Packets: the demo's, the changes the host printed for them, and every topic
    # the tests use, with a payload taken from the demo's databases.
    packets = []
    with open(os.path.join(root, "examples", "demo.jsonl")) as f:
        packets += [json.loads(line) for line in f if line.startswith("{")]
    packets += [json.loads(line)["packet"] for line in out.decode().splitlines() if '"packet"' in line]
    topics = set()
    for folder, _, files in os.walk(os.path.join(root, "tests")):
        for name in files:
            with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as f:
                topics.update(re.findall(r'"((?:request|status)/DB/(?:persistent|realtime|presencesimulation)/[\w/]*)"',
                                         f.read()))
    for topic in sorted(topics):
        engine, relative = topic.split("/")[2], "/".join(topic.split("/")[3:])
        payload = images[engine] if relative == "DB" else sample(images[engine], relative)
        packets.append({"topic": topic, "payload": payload})
    for engine in engines:
        for section, value in images[engine].items():
            for kind in ("request", "status"):
                packets.append({"topic": "%s/DB/%s/%s" % (kind, engine, section), "payload": value})
    by_engine = {engine: [] for engine in engines}
    for packet in packets:
        engine = packet["topic"].split("/")[2] if packet["topic"].count("/") >= 2 else ""
        if engine in by_engine:
            by_engine[engine].append(packet)
            put("fuzz_packet_" + engine, packet)
    # Sequences: an object added, then changed, then removed.
    for engine, list_ in by_engine.items():
        for n in range(0, len(list_) - 2, 3):
            put("fuzz_packet_" + engine, "\n".join(json.dumps(p) for p in list_[n:n + 3]))

    # Orders of the command channel: resets, loads of the databases it has, and
    # the orders that only ever go to the host.
    command = "request/DB/command/"
    orders = [
        {"topic": command + "reset/all", "payload": {}},
        {"topic": command + "reset/presencesimulation", "payload": {}},
        {"topic": command + "persistent/load/database", "payload": images["persistent"]},
        {"topic": command + "presencesimulation/load/database", "payload": images["presencesimulation"]},
        {"topic": command + "persistent/load/database", "payload": dict(images["persistent"],
                                                                        versions={"database": "9.0.0"})},
        {"topic": command + "smtp/test", "payload": {"server": "smtp.example.com", "port": 587}},
        {"topic": command + "pairing/start", "payload": {"start": True, "name": "hall panel"}},
    ]
    for order in orders:
        put("fuzz_command", order)
    put("fuzz_command", "\n".join(json.dumps(o) for o in (orders[2], orders[0])))

    # Trees with classes: the elements and the thermostats of the databases.
    for name, section, single in (("elements", "elements", "psoe_room"), ("thermo", "thermo", None)):
        tree = images["persistent"].get(section, {})
        put("fuzz_deserialize_" + name, tree)
        for value in tree.get("objects_list", {}).values():
            put("fuzz_deserialize_" + name, value)
    for cls in sorted(f[:-4] for f in os.listdir(os.path.join(root, "database/persistent/objects/elements"))
                      if f.startswith("psoe_") and f.endswith(".cpp")):
        put("fuzz_deserialize_elements", {"@class": cls, "name": cls, "rooms": ["R1"], "function_map": {"x": "I1"}})
    put("fuzz_deserialize_thermo", {"objects_list": {"A": {"name": "a", "id_win": "", "thermo_enabled": True,
        "thermo": {"@class": "ps_object_thermo_pi_t", "calc_time": 300, "seasontype": 1}}}, "enabled": False})
    for cls in ("ps_object_thermo_isteresi_t", "ps_object_thermo_pwm_t"):
        put("fuzz_deserialize_thermo", {"name": "t", "thermo": {"@class": cls, "seasontype": 2}})

    # Paths: the topics of the tests over the databases they address.
    for n, topic in enumerate(sorted(topics)):
        engine, relative = topic.split("/")[2], "/".join(topic.split("/")[3:])
        value = json.dumps(sample(images[engine], relative))
        put("fuzz_json_path", relative + "\n" + value + "\n" + json.dumps(images[engine]))
    for path, doc in (("list[1]/name", {"list": [{"name": "a"}, {"name": "b"}]}), ("a/b/c", {"a": {"b": {}}}),
                      ("[root]/a", {"a": 1}), ("0/x", [{"x": 1}]), ("list/[0]", {"list": [1, 2]})):
        put("fuzz_json_path", path + "\n" + "null\n" + json.dumps(doc))
        put("fuzz_json_path", path + "\n" + '{"k":true}\n' + json.dumps(doc))


if __name__ == "__main__":
    main()
