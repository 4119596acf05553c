// The peer's side of bench_cross_road: a states server keeping its states in
// a jsonl file, one writer and three subscribers, each a process of its own on
// loopback, fed the workload file that the benchmark wrote.
//
//   node cross_road.js <workload.json> <data folder>
//
// The workload: {"items": N, "initial": [text, ...], "burst": [[n, text], ...],
// "singles": [[n, text], ...]}; text is an item's JSON, the value of state
// bench.0.I<n>. The data folder gets the N states before the server starts.
//
// As in the benchmark's own side, this process feeds the writer lines on its
// standard input and times the subscribers' lines as they arrive on their
// standard output. Prints one JSON line: {"items", "burst", "per_s", "singles",
// "p50_ms", "p99_ms", "cpu_us_per_change": {"server", "writer", "followers",
// "harness"}, "others_cores"}: the processor time of each during the burst
// (harness: this process), and the cores the machine's other processes took.
"use strict";

const { spawn } = require("child_process");
const fs = require("fs");
const net = require("net");
const path = require("path");

const prefix = "bench.0.";
const followers = 3;

// Warnings and errors to standard error: standard output carries the lines.
const logger = {
    silly() {},
    debug() {},
    info() {},
    warn: (message) => process.stderr.write(`peer: ${message}\n`),
    error: (message) => process.stderr.write(`peer: ${message}\n`),
};

function connection(port, dataDir) {
    return { type: "jsonl", host: "127.0.0.1", port, dataDir, options: {}, backup: { disabled: true } };
}

function runServer(port, dataDir) {
    const { Server } = require("@iobroker/db-states-jsonl");
    // On SIGTERM the file takes what is still buffered, as on an orderly end.
    process.on("SIGTERM", () => server.destroy().finally(() => process.exit(0)));
    const server = new Server({
        namespace: "server",
        connection: connection(port, dataDir),
        logger,
        connected: () => process.stdout.write("ready\n"),
    });
}

// Reads "<n>\t<text>" lines and sets each, without waiting for the previous:
// a burst is as many requests in flight as the client takes.
function runWriter(port) {
    const { Client } = require("@iobroker/db-states-redis");
    const client = new Client({
        namespace: "writer",
        connection: connection(port),
        logger,
        connected: () => {
            let pending = "";
            process.stdin.on("data", (chunk) => {
                pending += chunk;
                let end;
                while ((end = pending.indexOf("\n")) >= 0) {
                    const line = pending.slice(0, end);
                    pending = pending.slice(end + 1);
                    const tab = line.indexOf("\t");
                    client
                        .setState(prefix + "I" + line.slice(0, tab), { val: line.slice(tab + 1), ack: false })
                        .catch((error) => logger.error(String(error)));
                }
            });
            process.stdout.write("ready\n");
        },
    });
}

// Prints the value of every change of a state of the benchmark as one line.
function runFollower(port, n) {
    const { Client } = require("@iobroker/db-states-redis");
    const client = new Client({
        namespace: `follower${n}`,
        connection: connection(port),
        logger,
        change: (id, state) => {
            if (state && typeof state.val === "string")
                process.stdout.write(state.val + "\n");
        },
        connected: () => {
            client.subscribe(prefix + "*").then(() => process.stdout.write("ready\n"));
        },
    });
}

function freePort() {
    return new Promise((resolve, reject) => {
        const server = net.createServer();
        server.once("error", reject);
        server.listen(0, "127.0.0.1", () => {
            const { port } = server.address();
            server.close(() => resolve(port));
        });
    });
}

// User and system time of a process so far, in microseconds.
function cpuMicros(pid) {
    const fields = fs.readFileSync(`/proc/${pid}/stat`, "utf8").split(") ")[1].split(" ");
    return ((Number(fields[11]) + Number(fields[12])) * 1e6) / 100;
}

function child(role, ...args) {
    const process_ = spawn(process.execPath, [__filename, role, ...args.map(String)], {
        stdio: ["pipe", "pipe", "inherit"],
    });
    process_.stdout.setEncoding("utf8");
    let pending = "";
    process_.onLine = () => {};
    process_.stdout.on("data", (chunk) => {
        pending += chunk;
        let end;
        while ((end = pending.indexOf("\n")) >= 0) {
            const line = pending.slice(0, end);
            pending = pending.slice(end + 1);
            process_.onLine(line);
        }
    });
    process_.ready = new Promise((resolve, reject) => {
        process_.onLine = (line) => line === "ready" && resolve();
        process_.once("exit", (code) => reject(new Error(`${role} ended with ${code}`)));
    });
    return process_;
}

// Processor time of the whole machine so far, all cores, in microseconds.
function machineBusyMicros() {
    const fields = fs.readFileSync("/proc/stat", "utf8").split("\n")[0].trim().split(/\s+/).slice(1, 9).map(Number);
    return ((fields.reduce((a, b) => a + b, 0) - fields[3] - fields[4]) * 1e6) / 100;
}

const pause = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

async function coordinate(workloadFile, dataDir) {
    const workload = JSON.parse(fs.readFileSync(workloadFile, "utf8"));
    fs.mkdirSync(dataDir, { recursive: true });
    // The states as the server's own file holds them: one jsonl entry each.
    const now = Date.now();
    fs.writeFileSync(
        path.join(dataDir, "states.jsonl"),
        workload.initial
            .map((text, n) =>
                JSON.stringify({
                    k: `${prefix}I${n}`,
                    v: { val: text, ack: true, ts: now, q: 0, from: "system.adapter.bench.0", lc: now },
                }),
            )
            .join("\n") + "\n",
    );

    const port = await freePort();
    const server = child("--server", port, dataDir);
    await server.ready;
    const subscribers = Array.from({ length: followers }, (_, n) => child("--follower", port, n));
    const writer = child("--writer", port);
    await Promise.all([writer.ready, ...subscribers.map((s) => s.ready)]);

    // Every change's value is unique: its text identifies it in the subscribers' lines.
    const changes = [...workload.burst, ...workload.singles];
    const index = new Map(changes.map(([, text], i) => [text, i]));
    const counts = new Uint8Array(changes.length);
    const doneAt = new Array(changes.length);
    let completed = 0;
    let waiting = null;
    for (const subscriber of subscribers) {
        subscriber.onLine = (line) => {
            const i = index.get(line);
            if (i !== undefined && ++counts[i] === followers) {
                doneAt[i] = process.hrtime.bigint();
                ++completed;
                if (waiting && waiting.done())
                    waiting.resolve();
            }
        };
    }
    const until = (done) =>
        new Promise((resolve) => {
            if (done())
                return resolve();
            waiting = { done, resolve };
        });
    const send = (from, to) =>
        writer.stdin.write(changes.slice(from, to).map(([n, text]) => `${n}\t${text}\n`).join(""));

    await pause(500);
    const all = [server, writer, ...subscribers];
    const cpuBefore = all.map((p) => cpuMicros(p.pid));
    const harnessBefore = process.cpuUsage();
    const machineBefore = machineBusyMicros();
    const burst = workload.burst.length;
    const start = process.hrtime.bigint();
    send(0, burst);
    await until(() => completed === burst);
    const end = doneAt.slice(0, burst).reduce((a, b) => (b > a ? b : a));
    const cpu = all.map((p, i) => (cpuMicros(p.pid) - cpuBefore[i]) / burst);
    const harness = process.cpuUsage(harnessBefore);
    const machine = machineBusyMicros() - machineBefore;
    const seconds = Number(end - start) / 1e9;
    const own = (cpu.reduce((a, b) => a + b, 0) * burst) + harness.user + harness.system;

    // The same pause as the benchmark's own side before the single changes.
    await pause(4000);
    const latencies = [];
    for (let i = burst; i < changes.length; ++i) {
        const sent = process.hrtime.bigint();
        send(i, i + 1);
        await until(() => counts[i] === followers);
        latencies.push(Number(doneAt[i] - sent) / 1e6);
    }
    latencies.sort((a, b) => a - b);

    for (const p of all)
        p.kill("SIGTERM");
    process.stdout.write(
        JSON.stringify({
            items: workload.items,
            burst,
            per_s: burst / seconds,
            singles: latencies.length,
            p50_ms: latencies[Math.floor(latencies.length / 2)],
            p99_ms: latencies[Math.floor((latencies.length * 99) / 100)],
            cpu_us_per_change: {
                server: cpu[0],
                writer: cpu[1],
                followers: cpu.slice(2).reduce((a, b) => a + b, 0) / followers,
                harness: (harness.user + harness.system) / burst,
            },
            others_cores: Math.max(0, (machine - own) / 1e6 / seconds),
        }) + "\n",
    );
}

const [role, ...args] = process.argv.slice(2);
if (role === "--server")
    runServer(Number(args[0]), args[1]);
else if (role === "--writer")
    runWriter(Number(args[0]));
else if (role === "--follower")
    runFollower(Number(args[0]), Number(args[1]));
else
    coordinate(role, args[0]).catch((error) => {
        process.stderr.write(String(error && error.stack ? error.stack : error) + "\n");
        process.exit(1);
    });
