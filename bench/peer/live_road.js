// The peer's side of the live road benchmark: the same random changes as
// bench_live_road, each a set() of a small JSON value under one of `items`
// keys, in a jsonl-db store that is closed to its file at the end.
//
//   node live_road.js <items> <changes> <rt|ps> <file>
//
// Prints one JSON line: {"items", "changes", "per_s", "checksum"}; the
// checksum lets the benchmark make sure both sides ran the same sequence.
"use strict";

const { JsonlDB } = require("@alcalzone/jsonl-db");
const fs = require("fs");

// xorshift32, as in bench_live_road.cpp.
function sequence(items, changes) {
    let x = 2463534242 >>> 0;
    const next = () => {
        x ^= x << 13;
        x >>>= 0;
        x ^= x >>> 17;
        x ^= x << 5;
        x >>>= 0;
        return x;
    };
    const keys = new Array(changes);
    const values = new Array(changes);
    let checksum = 0;
    for (let i = 0; i < changes; ++i) {
        keys[i] = next() % items;
        values[i] = next() % 1000;
        checksum = (checksum * 31 + keys[i] * 1000 + values[i]) % 1000000007;
    }
    return { keys, values, checksum };
}

// What the road of that name carries for one change.
function payload(kind, n, value) {
    if (kind === "rt")
        return String(value);
    return {
        id_driver: "",
        name: `item ${value}`,
        enabled: true,
        status: `1/1/${n}`,
        command: "1/1/2",
        feedback: "1/1/3",
        type: "dtp_1",
    };
}

async function main() {
    const [items, changes] = [Number(process.argv[2]), Number(process.argv[3])];
    const kind = process.argv[4];
    const file = process.argv[5];
    const { keys, values, checksum } = sequence(items, changes);
    const names = Array.from({ length: items }, (_, n) => `I${n}`);
    const data = keys.map((k, i) => payload(kind, k, values[i]));

    fs.rmSync(file, { force: true });
    const db = new JsonlDB(file);
    await db.open();
    for (let n = 0; n < items; ++n)
        db.set(names[n], payload(kind, n, 0));
    await db.close();

    await db.open();
    const start = process.hrtime.bigint();
    for (let i = 0; i < changes; ++i)
        db.set(names[keys[i]], data[i]);
    await db.close();
    const seconds = Number(process.hrtime.bigint() - start) / 1e9;
    fs.rmSync(file, { force: true });
    process.stdout.write(JSON.stringify({ items, changes, per_s: changes / seconds, checksum }) + "\n");
}

main().catch((error) => {
    process.stderr.write(String(error && error.stack ? error.stack : error) + "\n");
    process.exit(1);
});
